// The report of a failure in which the bridge has not followed a change of the agent.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One line: the version that the watcher saw last, the state that it told, and whether agent and watcher run. Read from
// the bridge's own client, whose fields no export shows; a product must be in.
std::string StateOfTheBridge();

// The agent's functions that the thread of the agent's last start has called, with their answers, oldest first, from
// the call record. Equal answers in a row are counted. Empty when there was no start.
std::vector<std::string> AnswersInTheLastStart();

// Calls with which products come and go that the agent refused on other threads.
std::vector<std::string> RefusalsOnOtherThreads();

// The title with each line indented below it; "none" below it when there is no line.
std::string Section(const std::string& title, const std::vector<std::string>& lines);
