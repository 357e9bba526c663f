#pragma once

#include <cstdint>
#include <exception>

namespace corvane::ny::utils {

// A failed agent call: the result code that the agent answered, or that the bridge answers in its place. The only
// exception that the bridge raises itself. Its text says nothing, whatever the toolchain; the code does.
class exception : public std::exception {
public:
    explicit exception(int32_t resultCode) noexcept : code(resultCode) {}

    const char* what() const noexcept override { return "Unknown exception"; }
    int32_t Code() const noexcept { return code; }

private:
    int32_t code;
};

// Raises the exception for every code but NY_OK.
inline void Check(int32_t resultCode) {
    if (resultCode != 0) {
        throw exception(resultCode);
    }
}

}  // namespace corvane::ny::utils

namespace bridge {

// Not to be mistaken for the standard's.
using AgentException = corvane::ny::utils::exception;
using corvane::ny::utils::Check;

}  // namespace bridge
