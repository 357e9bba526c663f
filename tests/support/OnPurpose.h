#pragma once

#include <initializer_list>

// The mistakes that a test makes on purpose, by the rules of docs/CHECKS.md that they break. A test that runs with the
// checking bridge fails for a finding of any other rule; one that is named need not be found. With the shipped bridge
// nothing is found. Holds until the test ends, longer than the object. Raises std::invalid_argument for what is no
// rule.
class OnPurpose {
public:
    OnPurpose(std::initializer_list<const char*> rules);
};

// Whether the bridge of this process is the checking one.
bool IsCheckingBridge();
