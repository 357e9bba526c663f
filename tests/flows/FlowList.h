// The flows by what they are about; AllFlows in Flow.h has them together.
#pragma once

#include <memory>
#include <vector>

#include "flows/Flow.h"

std::vector<FlowKind> LifeFlows();
std::vector<FlowKind> PropertyFlows();
std::vector<FlowKind> PolicyFlows();
std::vector<FlowKind> TaskFlows();
std::vector<FlowKind> UpdateFlows();
std::vector<FlowKind> ServiceFlows();

template <class Kind>
std::unique_ptr<Flow> MakeFlow(FlowWorld& world) {
    return std::make_unique<Kind>(world);
}
