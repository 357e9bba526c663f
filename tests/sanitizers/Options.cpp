// How the sanitizers behave in a program of tests. Each asks the program for its options, and for the leaks
// that are meant, under a name of its own.
//
//   allocator_may_return_null: a test asks for more memory than there is, and is to get null.
//   check_malloc_usable_size: a test asks whether a block is allocated, and "no" is an answer.
//   detect_stack_use_after_return: a thread that outlives a function must not use what was that function's.
extern "C" {

const char* __asan_default_options();
const char* __tsan_default_options();
const char* __ubsan_default_options();
const char* __lsan_default_suppressions();

const char* __asan_default_options() {
    return "allocator_may_return_null=1:check_malloc_usable_size=0:detect_stack_use_after_return=1:"
           "strict_string_checks=1";
}

const char* __tsan_default_options() {
    return "allocator_may_return_null=1:second_deadlock_stack=1";
}

const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}

// A second registration of a task enforcer or update notification is never freed: the contract asks for it.
const char* __lsan_default_suppressions() {
    return "leak:LeakDuplicateRecord";
}

}  // extern "C"
