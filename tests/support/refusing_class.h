#pragma once
#include "platform/win32.h"

#include <string>

/// Replaces a control class of the system in the program's own module and refuses to create the n-th window
/// of that class from now on (1 is the next); the others are plain windows.
class RefusingClass {
public:
    explicit RefusingClass(std::string name, int nth = 1);
    ~RefusingClass();
    RefusingClass(const RefusingClass&) = delete;
    RefusingClass& operator=(const RefusingClass&) = delete;

private:
    std::string name_;
};
