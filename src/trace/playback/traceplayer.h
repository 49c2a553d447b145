// SPDX-License-Identifier: MIT
#pragma once

#include <trace/core/traceframe.h>

#include <optional>
#include <vector>

/*! Says which frames of a trace are due, at the pace at which they were recorded or at another one.
 *
 *  Knows no clock: the present comes in with each call, in us of any clock that goes forward. Times of a trace may run
 *  backward or jump when somebody sets the clock of the computer that records; the frame after such a jump is due at once.
 *
 *  The bus where it is played has the time of the trace, stampAt(): it begins with that of the first frame and never goes
 *  backward. It goes as fast as the frames come: with the present at recorded speed, from one frame to the next where they
 *  are taken without their times, and it stands still when the trace is over.
 */
class TracePlayer
{
public:
    enum class Pace : quint8 {
        Recorded, //!< with the times between the frames, divided by the speed
        Unpaced,  //!< whenever somebody takes them
        Stepped,  //!< as many as were asked for by step()
    };

    static constexpr double slowest = 0.01;
    static constexpr double fastest = 1000;
    /*! What is longer between two frames is a clock that was set; us. */
    static constexpr qint64 longestPause = Q_INT64_C(3600) * 1000 * 1000;
    /*! Who comes so much too late has been held up, or sleeping: it goes on from there, and does not catch up; us. */
    static constexpr qint64 longestDelay = Q_INT64_C(1000) * 1000;

    /*! \a frames must outlive the player. */
    explicit TracePlayer(const std::vector<TraceFrame> *frames);

    /*! From slowest to fastest; before start(). */
    void setSpeed(double speed) { m_speed = speed; }
    void setPace(Pace pace) { m_pace = pace; }
    Pace pace() const { return m_pace; }

    /*! Begins with the first frame, which is due at once. Called again it begins anew; stamps go on. */
    void start(qint64 now);

    /*! Goes on from \a now in another way; what is left of the time to the next frame is kept. After start(). */
    void change(Pace pace, double speed, qint64 now);

    /*! Of a stepped trace: so many more may be taken. */
    void step(qint64 frames);

    /*! When the next frame is due, which may be past; empty when none will be. */
    std::optional<qint64> nextDue() const;

    /*! The next frame if it is due; else null. */
    const TraceFrame *take(qint64 now);

    /*! How many frames were taken since start(). */
    size_t position() const { return m_position; }
    bool isAtEnd() const { return m_position >= m_frames->size(); }

    /*! The time of the frame that was taken last on the bus where it is played, in us. */
    qint64 stamp() const { return m_stamp; }
    /*! What the bus where it is played would stamp on a frame at \a now. */
    qint64 stampAt(qint64 now) const;

private:
    qint64 dueTime() const;
    qint64 atSpeed(qint64 time) const;
    qint64 sinceBegin() const;
    bool isDue(qint64 now);
    void goOn();

    const std::vector<TraceFrame> *m_frames;
    double m_speed = 1.0;
    Pace m_pace = Pace::Recorded;
    bool m_isStarted = false;
    size_t m_position = 0;
    qint64 m_steps = 0;
    qint64 m_anchor = 0;  // when the first frame was due, later for each delay
    qint64 m_elapsed = 0; // us of the trace from the first frame to the next one, without jumps
    qint64 m_begin = 0;   // us; the stamp of the first frame, later for each delay
    qint64 m_stamp = 0;   // us; of what was last
};
