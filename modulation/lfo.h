// MOK_LFO: a low-frequency oscillator that drives one control.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zephyra {

class RandomSource;

/// Whoever an LFO drives. MAIN.
class LFO_CONTROL_WRAPPER_DELEGATE {
public:
    virtual ~LFO_CONTROL_WRAPPER_DELEGATE() = default;
    /// value: 0..1.
    virtual void lfoValue(double value) = 0;
};

/// The numbers that shapes are saved under; another one sounds as lineRise.
enum LfoShape : std::int64_t {
    kLfoSine = 0,
    kLfoSquare = 1,
    kLfoV = 2,
    kLfoLineRise = 3,
    kLfoLineFall = 4,
    kLfoRandom = 5,       ///< a new value each cycle
    kLfoRandomInterp = 6, ///< straight lines between them
};

/// A shape as people choose it.
struct LfoShapeEntry {
    const char* name;    ///< as typed
    const char* picture; ///< file name of its picture
};

/// In the order of the numbers.
inline constexpr std::array<LfoShapeEntry, 7> kLfoShapes = {
    {{"sine", "Sine.png"},
     {"square", "Square.png"},
     {"v", "V.png"},
     {"rise", "LineRise.png"},
     {"fall", "LineFall.png"},
     {"random", "random.png"},
     {"random_interp", "random_interp.png"}}};

inline constexpr double kLowestLfoRate = 0.016, kHighestLfoRate = 24.0; // Hz
/// Seconds from one tick to the next.
inline constexpr double kLfoTick = 0.03125;

/// The oscillator's state. Plain data.
struct lfo_data {
    static constexpr std::size_t kTableSize = 512;

    std::array<float, kTableSize> sineTable;
    double phi;                                       ///< phase, 0..1
    LFO_CONTROL_WRAPPER_DELEGATE* lfoWrapperDelegate; ///< not owned; may be null
    float currentRandomValue;                         ///< the target of the present cycle
    float lastRandomValue;                            ///< of the cycle before
    double value;                                     ///< latest output, 0..1
    double hz;                                        ///< cycles per second
    std::int64_t shape;
    /// Where phase and values stood when they were chosen last.
    struct Begin {
        double phi;
        float currentRandomValue, lastRandomValue;
        double value;
    } begin;
    double clockSubRatio; ///< cycles per beat while the rate follows a tempo
};

/// MAIN.
class MOK_LFO {
public:
    /// Everything 0 but the table. random, which must outlive this, is for the random shapes.
    explicit MOK_LFO(RandomSource& random);

    /// The one delegate, which must outlive this or be removed.
    void addDelegate(LFO_CONTROL_WRAPPER_DELEGATE* delegate) {
        data_.lfoWrapperDelegate = delegate;
    }
    void removeDelegate() { data_.lfoWrapperDelegate = nullptr; }

    /// max(p, 0); what is not finite is refused.
    void setPhase(double p);
    double getPhase() const { return data_.phi; }
    /// Clamped to kLowestLfoRate .. kHighestLfoRate; what is not finite is refused.
    void setHz(double hz);
    double hz() const { return data_.hz; }
    void setShape(std::int64_t shape) { data_.shape = shape; }
    std::int64_t shape() const { return data_.shape; }
    void setClockSubRatio(double ratio) { data_.clockSubRatio = ratio; }
    double clockSubRatio() const { return data_.clockSubRatio; }
    double value() const { return data_.value; }
    const std::array<float, lfo_data::kTableSize>& getSineTable() const { return data_.sineTable; }

    /// The value at the present phase, as the next tick would compute it without moving on.
    double valueAtPhase() const;

    /// Chooses the phase at which shape gives what lies at v between min and max, so that attaching
    /// does not make a control jump. v outside them is the caller's to hold.
    void resetPhaseAccordingToShape_MinRange_MaxRange_Phase(std::int64_t shape, double min,
                                                            double max, double v);

    /// Back to the phase that was chosen last, and the random values of that time.
    void startAnew();

private:
    friend void processLFO(MOK_LFO* lfo);

    lfo_data data_;
    RandomSource& random_;
};

/// One tick: moves the phase on by kLfoTick seconds, computes the value, tells the delegate. Null
/// is ignored. MAIN.
void processLFO(MOK_LFO* lfo);

} // namespace zephyra
