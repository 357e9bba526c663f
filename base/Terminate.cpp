// What ends the process where an exception leaves a function that lets none out, in the place of the C++ runtime's own
// handler. That one prints the name of the exception's type to standard error, which a DLL must not take for its own,
// and what makes the name readable takes a tenth of the DLL.
#include <cstdlib>
#include <exception>

namespace __gnu_cxx {

void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx
