#include "simulator/core/frame/Guarded.h"

#include <new>
#include <stdexcept>

#include "simulator/core/frame/Frame.h"

namespace simulator {

int32_t AnswerOfCurrentException(const char* function) noexcept {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure.code;
    } catch (const HandleMisuse& misuse) {
        TheFrame().misuse.Add(function, misuse.description);
        return NY_INVALID_ARGUMENT;
    } catch (const std::bad_alloc&) {
        return NY_OUT_OF_MEMORY;
    } catch (const std::length_error&) {
        // More than any memory could hold.
        return NY_OUT_OF_MEMORY;
    } catch (...) {
        return NY_UNEXPECTED;
    }
}

}  // namespace simulator
