// The headings of the checks.
#pragma once

namespace tool::doctor {

inline constexpr char bridgeGroup[] = "Bridge";
inline constexpr char registryGroup[] = "Registry";
inline constexpr char pathGroup[] = "Runtime path";
inline constexpr char libraryGroup[] = "Agent's libraries";
inline constexpr char trialGroup[] = "Agent, tried in a process of its own";
inline constexpr char moduleGroup[] = "Module";

}  // namespace tool::doctor
