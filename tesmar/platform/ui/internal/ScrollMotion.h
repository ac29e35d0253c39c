// The motion of scrolled content along one axis: under a finger, after its lift, and back from past
// an end. Independent of views. Offsets are in points from the content's start, times in seconds.
#pragma once

namespace tesmar {

class ScrollMotion {
  public:
    // The part of the speed that remains after each millisecond.
    static constexpr double kDecelerationRate = 0.998;

    // The offsets at which the content may rest; past them it stretches a rubber band.
    void setRange(double lowest, double highest);
    // The length of the visible part; the rubber band always stretches by less.
    void setExtent(double extent) { extent_ = extent; }

    // Whether content may move past the ends at all; initially true.
    void setBounces(bool bounces) { bounces_ = bounces; }

    double offset() const { return offset_; }
    bool isMoving() const { return moving_; }
    // Stops any motion; `offset` may lie past the ends.
    void jumpTo(double offset);

    // Starts a drag. Content past an end does not jump: the rubber band keeps its stretch.
    void beginDrag();
    // The finger has moved the content by `distance` in all since beginDrag().
    void dragBy(double distance);
    // The finger lifts at `velocity`, in points of offset per second (NaN and infinity mean 0). The
    // content moves on until step() returns false.
    void endDrag(double velocity, double now);
    // The same, but the content comes to rest at `offset`, clamped to the range.
    void endDragAt(double offset, double velocity, double now);
    enum class Pace {
        calm,  // about half a second, as after a finger
        brisk, // 0.12 seconds, as the focus moves
    };
    // Moves to `offset`, clamped to the range; keeps the present speed when it was moving to an
    // offset already.
    void moveTo(double offset, double now, Pace pace = Pace::calm);
    // Where a moveTo() under way will end; otherwise the present offset.
    double destination() const { return moving_ && mode_ == Mode::springing ? target_ : offset_; }
    // Stops at the present offset.
    void stop() { moving_ = false; }

    // Motion that is under way began at `time` or later.
    void delayStart(double time);
    // Brings the offset up to `now`. Returns whether the content still moves.
    bool step(double now);

    // How far past an end the content appears when a finger has dragged it `overshoot` points past.
    static double rubberBand(double overshoot, double extent);

  private:
    enum class Mode { decelerating, springing };

    double nearestRest(double offset) const;
    double usable(double velocity) const;
    double inverseRubberBand(double stretch) const;
    void springFrom(double now, double velocity, double target, Pace pace = Pace::calm);

    double lowest_ = 0;
    double highest_ = 0;
    double extent_ = 1;
    bool bounces_ = true;
    double offset_ = 0;
    double dragOrigin_ = 0; // offset at beginDrag(), without the rubber band
    bool moving_ = false;
    Mode mode_ = Mode::decelerating;
    double startTime_ = 0;
    double startOffset_ = 0;
    double startVelocity_ = 0;
    double target_ = 0;
    double spring_ = 0; // its natural frequency, per second
    double speed_ = 0;  // of a spring at the last step
};

} // namespace tesmar
