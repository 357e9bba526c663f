#pragma once

// The place of the import through which this program's own code calls `function` of the operating system. Throws
// std::logic_error when it imports no such function.
void** FindImport(const void* function);
void SetImport(void** import, void* function);

// While it lives, this program's own code (the library's objects that are linked into it included) calls `replacement`
// where it calls a function of the operating system. What the system's libraries call among themselves stays. To be
// given functions as they are named in code that runs, not in an initialiser of a static object: there the compiler
// names a stub of its own instead, which leads to the replacement as well; so `replacement` calls `original` of this
// object.
template <class Function>
class SystemFunction {
public:
    SystemFunction(Function* systemFunction, Function* replacement)
        : original(systemFunction), import(FindImport(reinterpret_cast<void*>(systemFunction))) {
        SetImport(import, reinterpret_cast<void*>(replacement));
    }
    ~SystemFunction() { SetImport(import, reinterpret_cast<void*>(original)); }
    SystemFunction(const SystemFunction&) = delete;
    SystemFunction& operator=(const SystemFunction&) = delete;

    Function* const original;

private:
    void** const import;
};
