#include "simulator/core/frame/Frame.h"

namespace simulator {

namespace {

Frame& theFrame = *new Frame;

}  // namespace

Frame& TheFrame() {
    return theFrame;
}

}  // namespace simulator
