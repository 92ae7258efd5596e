#include "engine/modulation/ModRoutes.h"

#include "engine/modulation/RouteTargets.h"

namespace tolvane {

ModRoutes::ModRoutes(ModuleGraph& graph, PolyModule& velocity, PolyModule& zero,
                     const std::array<PolyModule*, 4>& modulators)
    : zero_(zero),
      modulators_(modulators),
      depthA_(graph, 0, kRuleFromInputs, 0.0f),
      sensA_(graph, 0, kRuleFromInputs, 0.0f),
      amountA_(graph, RouteAmount::kNumInputs, kRuleFromInputs),
      depthB_(graph, 0, kRuleFromInputs, 0.0f),
      sensB_(graph, 0, kRuleFromInputs, 0.0f),
      amountB_(graph, RouteAmount::kNumInputs, kRuleFromInputs) {
    amountA_.connectInput(&depthA_, RouteAmount::kDepth);
    amountA_.connectInput(&sensA_, RouteAmount::kSens);
    amountA_.connectInput(&velocity, RouteAmount::kVelocity);
    amountB_.connectInput(&depthB_, RouteAmount::kDepth);
    amountB_.connectInput(&sensB_, RouteAmount::kSens);
    amountB_.connectInput(&velocity, RouteAmount::kVelocity);
}

void ModRoutes::addTarget(PolyModule& target, int bit) {
    if (targetCount_ >= kMaxTargets) return;
    int t = targetCount_++;
    targets_[static_cast<std::size_t>(t)] = &target;
    bits_[static_cast<std::size_t>(t)] = bit;
    target.connectInput(&amountA_, RouteTarget::kAmountA);
    target.connectInput(&amountB_, RouteTarget::kAmountB);
    wireTarget(t, 0);
    wireTarget(t, 1);
}

void ModRoutes::wireTarget(int t, int route) {
    int value = connection_[static_cast<std::size_t>(route)];
    PolyModule* target = targets_[static_cast<std::size_t>(t)];
    PolyModule* source = (value & bits_[static_cast<std::size_t>(t)])
                             ? modulators_[static_cast<std::size_t>(modulatorOf(value))]
                             : &zero_;
    int input = route == 0 ? RouteTarget::kRouteA : RouteTarget::kRouteB;
    if (target->inputSource(input) != source) target->connectInput(source, input);
}

void ModRoutes::setConnection(int route, int value) {
    if (route < 0 || route >= kRoutes) return;
    connection_[static_cast<std::size_t>(route)] = value < 0 ? 0 : value;
    for (int t = 0; t < targetCount_; ++t) wireTarget(t, route);
}

void ModRoutes::setDepth(int route, float depth) { setTarget(route == 0 ? depthA_ : depthB_, depth); }

void ModRoutes::setVelocitySens(int route, float sens) { setTarget(route == 0 ? sensA_ : sensB_, sens); }

}  // namespace tolvane
