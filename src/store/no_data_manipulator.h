#pragma once
#include "store/data_manipulator.h"

/// The store of an entry without data.
class NoDataManipulator : public virtual DataManipulator {
public:
    void read() override {}
    void write() override {}
    bool changed() const override { return false; }
};
