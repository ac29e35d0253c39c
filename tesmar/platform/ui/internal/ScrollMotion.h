// How scrolled content moves along one axis: under a finger, after it, and back from past an end.
// Knows no views. Offsets are points from the content's start; times are seconds.
#pragma once

namespace tesmar {

class ScrollMotion {
  public:
    // What of a speed is left after each millisecond.
    static constexpr double kDecelerationRate = 0.998;

    // The offsets at which the content may rest; nothing lies past them but the rubber band.
    void setRange(double lowest, double highest);
    // The length of the visible part: the rubber band never stretches that far.
    void setExtent(double extent) { extent_ = extent; }

    double offset() const { return offset_; }
    bool isMoving() const { return moving_; }
    // Stands at `offset`, wherever that is.
    void jumpTo(double offset);

    // A finger takes hold; where the content stands past an end, the band keeps its stretch.
    void beginDrag();
    // The finger has moved the content by `distance` since it took hold.
    void dragBy(double distance);
    // The finger lets go at `velocity`, in points of offset per second. What follows is motion
    // until step() answers false.
    void endDrag(double velocity, double now);
    // Sets off to a resting offset; at the present speed when it was on such a way already.
    void moveTo(double offset, double now);
    // Where it will rest after moveTo(), or stands.
    double destination() const { return moving_ && mode_ == Mode::springing ? target_ : offset_; }
    // Stands still, here.
    void stop() { moving_ = false; }

    // Brings the offset up to `now`; false when it has come to rest.
    bool step(double now);

    // The visible stretch for a finger's `overshoot` past an end.
    static double rubberBand(double overshoot, double extent);

  private:
    enum class Mode { decelerating, springing };

    double nearestRest(double offset) const;
    double inverseRubberBand(double stretch) const;
    void springFrom(double now, double velocity, double target);

    double lowest_ = 0;
    double highest_ = 0;
    double extent_ = 1;
    double offset_ = 0;
    double dragOrigin_ = 0; // unstretched
    bool moving_ = false;
    Mode mode_ = Mode::decelerating;
    double startTime_ = 0;
    double startOffset_ = 0;
    double startVelocity_ = 0;
    double target_ = 0;
    double speed_ = 0; // of a spring at the last step
};

} // namespace tesmar
