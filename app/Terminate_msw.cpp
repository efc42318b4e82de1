// What an exception that nobody catches ends in. GCC's library would print the exception's type, for which it
// brings 50 kB that make C++ names readable; a Windows program has no console where anybody would read them.
#include <cstdlib>
#include <exception>

namespace __gnu_cxx {
// Declared by the library, which takes this one in place of its own.
void __verbose_terminate_handler() { std::abort(); }
}  // namespace __gnu_cxx
