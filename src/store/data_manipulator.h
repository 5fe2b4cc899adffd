#pragma once

/// The stored state that an entry edits. Entry classes and their store classes share one base object.
class DataManipulator {
public:
    /// Loads the stored state and drops edits. Throws a text if the state cannot be read.
    virtual void read() = 0;
    /// Stores the current state. Throws a text on failure.
    virtual void write() = 0;
    /// Whether the current state differs from the one that was last read or written.
    virtual bool changed() const = 0;

protected:
    // Not virtual: nothing deletes an entry or its store through this base.
    ~DataManipulator() = default;
};

/// The store of an entry without data.
class NoDataManipulator : public virtual DataManipulator {
public:
    void read() override {}
    void write() override {}
    bool changed() const override { return false; }
};
