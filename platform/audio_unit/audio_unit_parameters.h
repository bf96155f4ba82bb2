// AUParameterTree: the parameters that a host sees, records and moves.
#pragma once

#include "platform/audio_unit/audio_unit_events.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// What a parameter's values are, by the platform's numbers.
enum class AudioUnitParameterUnit : std::uint32_t {
    generic = 0,
    boolean = 2,
    percent = 3,
    seconds = 4,
    phase = 6,
    rate = 7,
    hertz = 8,
    relativeSemiTones = 10,
    pan = 18,
    milliseconds = 24,
};

namespace parameter_flag {
inline constexpr std::uint32_t readable = 0x40000000;
inline constexpr std::uint32_t writable = 0x80000000;
inline constexpr std::uint32_t displayLogarithmic = 0x00400000;
} // namespace parameter_flag

/// What a set means in a recording of automation.
enum class AUParameterAutomationEventType : std::uint8_t { value, touch, release };

using AUHostTime = std::uint64_t;               ///< nanoseconds on the host's clock
using AUParameterObserverToken = std::uint64_t; ///< 0 is nobody

struct AUParameterAutomationEvent {
    AUHostTime hostTime;
    AUParameterAddress address;
    AUValue value;
    AUParameterAutomationEventType eventType;
};

class AUParameterTree;

/// One parameter. Its facts never change; its value lives with whoever implements the tree.
class AUParameter {
public:
    struct Facts {
        std::string identifier;
        std::string displayName;
        AUParameterAddress address = 0;
        AUValue minValue = 0.0f, maxValue = 1.0f;
        AudioUnitParameterUnit unit = AudioUnitParameterUnit::generic;
        std::optional<std::string> unitName = {};
        std::uint32_t flags = 0; ///< bits of parameter_flag
        std::optional<std::vector<std::string>> valueStrings = {};
        std::optional<std::vector<AUParameterAddress>> dependentParameters = {};
    };

    explicit AUParameter(Facts facts) : facts_(std::move(facts)) {}

    const Facts& facts() const noexcept { return facts_; }
    AUParameterAddress address() const noexcept { return facts_.address; }

    /// What the implementor provides; 0 without a tree. Any thread.
    AUValue value() const;

    /// Hands value to the implementor, then tells every observer but originator's. value is passed
    /// on as it is; one that is not finite is ignored. Any thread but RENDER.
    void setValue_originator_atHostTime_eventType(AUValue value,
                                                  AUParameterObserverToken originator,
                                                  AUHostTime hostTime,
                                                  AUParameterAutomationEventType eventType);
    /// The same for the implementor itself, which has stored value. Any thread but RENDER.
    void tellObservers(AUValue value, AUParameterObserverToken originator, AUHostTime hostTime,
                       AUParameterAutomationEventType eventType) const;
    /// setValue_originator_atHostTime_eventType() as a plain value, now, for everybody.
    void setValue(AUValue value);

private:
    friend class AUParameterTree;
    Facts facts_;
    AUParameterTree* tree_ = nullptr;
};

/// The flat list of parameters, and who watches them. Made on MAIN; shared with hosts, which may
/// call on any thread but RENDER. Destroyed when nobody calls any more.
class AUParameterTree {
public:
    static std::shared_ptr<AUParameter>
    createParameterWithIdentifier_name_address_min_max_unit_unitName_flags_valueStrings_dependentParameters(
        std::string identifier, std::string name, AUParameterAddress address, AUValue min,
        AUValue max, AudioUnitParameterUnit unit, std::optional<std::string> unitName,
        std::uint32_t flags, std::optional<std::vector<std::string>> valueStrings,
        std::optional<std::vector<AUParameterAddress>> dependentParameters);

    /// A parameter belongs to the tree made last with it. Null children are left out.
    static std::shared_ptr<AUParameterTree>
    createTreeWithChildren(std::vector<std::shared_ptr<AUParameter>> children);
    ~AUParameterTree();

    const std::vector<std::shared_ptr<AUParameter>>& children() const noexcept { return children_; }
    /// Null for an address that no child has. Any thread.
    AUParameter* parameterWithAddress(AUParameterAddress address) const noexcept;

    /// Stores a value where it is read, and reads it there. Set once, before anybody calls; they
    /// run on the caller's thread.
    std::function<void(const AUParameter&, AUValue)> implementorValueObserver;
    std::function<AUValue(const AUParameter&)> implementorValueProvider;

    using ParameterObserver = std::function<void(AUParameterAddress, AUValue)>;
    using AutomationObserver = std::function<void(const AUParameterAutomationEvent&)>;

    /// Observers run on the thread that sets, after the implementor. Removing waits for nobody: one
    /// call that is under way may still end.
    /// An empty one is not added: token 0.
    AUParameterObserverToken tokenByAddingParameterObserver(ParameterObserver observer);
    AUParameterObserverToken tokenByAddingParameterAutomationObserver(AutomationObserver observer);
    void removeParameterObserver(AUParameterObserverToken token);

private:
    friend class AUParameter;
    struct Observers {
        std::map<AUParameterObserverToken, ParameterObserver> plain;
        std::map<AUParameterObserverToken, AutomationObserver> automation;
    };
    explicit AUParameterTree(std::vector<std::shared_ptr<AUParameter>> children);
    std::shared_ptr<const Observers> observers() const;
    template <typename Change>
    void changeObservers(Change change);

    std::vector<std::shared_ptr<AUParameter>> children_;
    mutable std::mutex mutex_; // guards the pointer; the list behind it is replaced, never changed
    std::shared_ptr<const Observers> observers_;
    AUParameterObserverToken nextToken_ = 1;
};

} // namespace zephyra
