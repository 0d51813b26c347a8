#pragma once

#include <string>
#include <vector>

namespace vm {

using Words = std::vector<std::string>;

/// Sends a line to the tests.
void say(const std::string& line);

/// What an order may throw; its text is the answer.
struct Failure {
    std::string text;
};

/// Throws the errno's text unless `isDone`.
void require(bool isDone, const std::string& what);

} // namespace vm
