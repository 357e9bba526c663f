// The header for tests of modules, compiled for Microsoft's C++ ABI.
#include "vsmsgbus_testing.hpp"
