// Tests look into the product's own namespace. This is part of their precompiled header, so that none has to say so.
#pragma once

namespace bridge {}
using namespace bridge;
