#pragma once

#include "words.h"

#include <poll.h>
#include <vector>

/// Input devices: those of the kernel, watched under a label, and odd ones that are made here.
namespace vm::nodes {

/// watch LABEL NAME...: opens the newest device of that name; each of its frames becomes
/// "@LABEL type/code/value ..." without repetitions and lights, its end "@gone LABEL".
std::string watch(const Words& words);
std::string unwatch(const Words& words);
/// grab LABEL 0|1 on a watched device.
std::string grab(const Words& words);
/// held NAME...: the codes of the keys that are down on the newest device of that name.
std::string held(const Words& words);
/// make LABEL NAME BUS VENDOR PRODUCT type:code,code,... (decimal; a range is first-last).
std::string make(const Words& words);
/// emit LABEL type/code/value ...: one frame.
std::string emit(const Words& words);
/// flood LABEL COUNT type/code/value ...: frames without a pause, values alternating with 0.
std::string flood(const Words& words);
std::string drop(const Words& words);
/// write LABEL type/code/value ...: into a watched node, as a light is switched.
std::string write(const Words& words);
/// names: of all input devices, one line.
std::string names(const Words& words);

void addTo(std::vector<pollfd>& polled);
void handle(const pollfd& polled);

} // namespace vm::nodes
