// Result: a value, or one line that says what went wrong and what would be right.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace zephyra {

/// What went wrong, as one line for a person: which file or value, and what would be right.
struct Failure {
    std::string message;
};

/// Either a value or a Failure; nothing is thrown across a folder's border. value() may only be
/// called when ok() is true, message() only when it is false.
template <typename Value>
class Result {
public:
    Result(Value value) : value_(std::move(value)) {}
    Result(Failure failure) : failure_(std::move(failure)) {}

    bool ok() const noexcept { return value_.has_value(); }
    explicit operator bool() const noexcept { return ok(); }
    Value& value() noexcept { return *value_; }
    const Value& value() const noexcept { return *value_; }
    const std::string& message() const noexcept { return failure_.message; }

private:
    std::optional<Value> value_;
    Failure failure_;
};

/// The Result of an operation that answers nothing but success.
template <>
class Result<void> {
public:
    Result() = default;
    Result(Failure failure) : failure_(std::move(failure)) {}

    bool ok() const noexcept { return !failure_.has_value(); }
    explicit operator bool() const noexcept { return ok(); }
    const std::string& message() const noexcept { return failure_->message; }

private:
    std::optional<Failure> failure_;
};

} // namespace zephyra
