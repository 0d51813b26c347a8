#pragma once

#include "words.h"

/// Programs in the machine. What they write goes to the console.
namespace vm::processes {

/// start LABEL PROGRAM ARGUMENT...; the answer is its process id.
std::string start(const Words& words);
/// signal LABEL NUMBER; answers once the signal is sent.
std::string signal(const Words& words);
/// shell COMMAND...: its output, lines divided by "|".
std::string shell(const Words& words);
/// Says "@LABEL exit STATUS" for each that has ended.
void reap();

} // namespace vm::processes
