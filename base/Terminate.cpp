// The handler that ends the process when an exception leaves a noexcept function, in the place of the C++ runtime's
// own. The runtime's handler prints the name of the exception's type to standard error, which belongs to the program
// and not to a DLL, and its code for making that name readable would be a tenth of the DLL.
#include <cstdlib>
#include <exception>

namespace __gnu_cxx {

void __verbose_terminate_handler() {
    std::abort();
}

}  // namespace __gnu_cxx
