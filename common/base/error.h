#pragma once

#include <string>
#include <tl/expected.hpp>
#include <utility>

namespace tamsel {

/// What went wrong and where. `where` names a place inside the thing that was handled, such as a
/// field path ("shortcuts[3].action.type") or a file; it may be empty.
struct Error {
    std::string what;
    std::string where = {};

    /// One line for a log: "where: what", or "what" alone.
    std::string description() const { return where.empty() ? what : where + ": " + what; }

    bool operator==(const Error&) const = default;
};

template <class T>
using Result = tl::expected<T, Error>;

/// `return fail("...")` from a function that returns a Result.
inline tl::unexpected<Error> fail(std::string what, std::string where = {}) {
    return tl::unexpected<Error>(Error{std::move(what), std::move(where)});
}

} // namespace tamsel
