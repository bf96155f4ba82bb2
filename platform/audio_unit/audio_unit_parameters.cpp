#include "platform/audio_unit/audio_unit_parameters.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace zephyra {

AUValue AUParameter::value() const {
    return tree_ && tree_->implementorValueProvider ? tree_->implementorValueProvider(*this) : 0.0f;
}

void AUParameter::setValue_originator_atHostTime_eventType(
    AUValue value, AUParameterObserverToken originator, AUHostTime hostTime,
    AUParameterAutomationEventType eventType) {
    if (!tree_ || !std::isfinite(value)) return;
    if (tree_->implementorValueObserver) tree_->implementorValueObserver(*this, value);
    tellObservers(value, originator, hostTime, eventType);
}

void AUParameter::tellObservers(AUValue value, AUParameterObserverToken originator,
                                AUHostTime hostTime,
                                AUParameterAutomationEventType eventType) const {
    if (!tree_) return;
    const auto observers = tree_->observers();
    for (const auto& [token, observer] : observers->plain)
        if (token != originator) observer(address(), value);
    const AUParameterAutomationEvent event{hostTime, address(), value, eventType};
    for (const auto& [token, observer] : observers->automation)
        if (token != originator) observer(event);
}

void AUParameter::setValue(AUValue value) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
    setValue_originator_atHostTime_eventType(value, 0, static_cast<AUHostTime>(nanoseconds),
                                             AUParameterAutomationEventType::value);
}

std::shared_ptr<AUParameter> AUParameterTree::
    createParameterWithIdentifier_name_address_min_max_unit_unitName_flags_valueStrings_dependentParameters(
        std::string identifier, std::string name, AUParameterAddress address, AUValue min,
        AUValue max, AudioUnitParameterUnit unit, std::optional<std::string> unitName,
        std::uint32_t flags, std::optional<std::vector<std::string>> valueStrings,
        std::optional<std::vector<AUParameterAddress>> dependentParameters) {
    return std::make_shared<AUParameter>(AUParameter::Facts{
        std::move(identifier), std::move(name), address, min, max, unit, std::move(unitName), flags,
        std::move(valueStrings), std::move(dependentParameters)});
}

std::shared_ptr<AUParameterTree>
AUParameterTree::createTreeWithChildren(std::vector<std::shared_ptr<AUParameter>> children) {
    std::erase(children, nullptr);
    return std::shared_ptr<AUParameterTree>(new AUParameterTree(std::move(children)));
}

AUParameterTree::AUParameterTree(std::vector<std::shared_ptr<AUParameter>> children)
    : children_(std::move(children)), observers_(std::make_shared<const Observers>()) {
    for (const auto& child : children_) child->tree_ = this;
}

AUParameterTree::~AUParameterTree() {
    for (const auto& child : children_)
        if (child->tree_ == this) child->tree_ = nullptr;
}

AUParameter* AUParameterTree::parameterWithAddress(AUParameterAddress address) const noexcept {
    for (const auto& child : children_)
        if (child->address() == address) return child.get();
    return nullptr;
}

std::shared_ptr<const AUParameterTree::Observers> AUParameterTree::observers() const {
    const std::lock_guard lock(mutex_);
    return observers_;
}

template <typename Change>
void AUParameterTree::changeObservers(Change change) {
    const std::lock_guard lock(mutex_);
    auto changed = std::make_shared<Observers>(*observers_);
    change(*changed);
    observers_ = std::move(changed);
}

AUParameterObserverToken
AUParameterTree::tokenByAddingParameterObserver(ParameterObserver observer) {
    AUParameterObserverToken token = 0;
    if (observer)
        changeObservers([&](Observers& list) {
            list.plain.emplace(token = nextToken_++, std::move(observer));
        });
    return token;
}

AUParameterObserverToken
AUParameterTree::tokenByAddingParameterAutomationObserver(AutomationObserver observer) {
    AUParameterObserverToken token = 0;
    if (observer)
        changeObservers([&](Observers& list) {
            list.automation.emplace(token = nextToken_++, std::move(observer));
        });
    return token;
}

void AUParameterTree::removeParameterObserver(AUParameterObserverToken token) {
    changeObservers([token](Observers& list) {
        list.plain.erase(token);
        list.automation.erase(token);
    });
}

} // namespace zephyra
