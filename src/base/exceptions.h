#pragma once
/// Exceptions of the configuration side, for failures to parse a number and failed calls of the operating
/// system. Every other fatal error there is thrown as a plain std::string.
#include <cstdint>
#include <string>
#include <utility>

namespace error {

/// The base class; never thrown itself.
class Exception {
public:
    Exception() = default;
    virtual ~Exception() = default;
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;

    /// What went wrong.
    virtual std::string description() const = 0;

    /// `description` followed directly by `message`.
    std::string full_text() const { return description() + message; }

    /// Empty unless a caller sets it.
    std::string message;
};

/// An operating-system call failed.
class ESystemError : public Exception {
public:
    explicit ESystemError(std::string description) : description_(std::move(description)) {}
    std::string description() const override { return description_; }

private:
    std::string description_;
};

/// System codes 2 (file not found) and 3 (path not found).
class EFileNotFoundError : public ESystemError {
public:
    using ESystemError::ESystemError;
};

/// System code 183 (already exists).
class EFileExistsError : public ESystemError {
public:
    using ESystemError::ESystemError;
};

/// A text is not a whole decimal number.
class EParseError : public Exception {
public:
    explicit EParseError(std::string description) : description_(std::move(description)) {}
    std::string description() const override { return description_; }

private:
    std::string description_;
};

} // namespace error

/// Throws the class for `code`, with the description `context`, ": " and the system's text.
[[noreturn]] void throw_system_error(std::uint32_t code, const std::string& context);
