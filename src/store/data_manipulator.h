#pragma once

/// What an entry edits, as it is stored. Entry classes and their store classes share one such base.
class DataManipulator {
public:
    /// Loads the stored state, dropping what was edited. Throws a text when it cannot be reached.
    virtual void read() = 0;
    /// Stores the current state. Throws a text on failure.
    virtual void write() = 0;
    /// Whether the current state differs from what was last read or written.
    virtual bool changed() const = 0;

protected:
    // Stores live as long as their entries, which nobody deletes through this base.
    ~DataManipulator() = default;
};

/// The store of an entry without data.
class NoDataManipulator : public virtual DataManipulator {
public:
    void read() override {}
    void write() override {}
    bool changed() const override { return false; }
};
