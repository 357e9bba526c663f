#pragma once

#include <initializer_list>

// The mistakes that a test makes on purpose, by the rules of docs/CHECKS.md that they break. With the checking bridge a
// test fails for a finding of any other rule; a rule that is named need not be found. The shipped bridge finds nothing.
// The names hold until the test ends, longer than the object. Raises std::invalid_argument for a name that is no
// rule's.
class OnPurpose {
public:
    OnPurpose(std::initializer_list<const char*> rules);
};

// Whether the bridge of this process is the checking one.
bool IsCheckingBridge();
