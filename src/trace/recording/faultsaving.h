// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! Decides when the flight recorder is saved by itself: some seconds after a fault, so that what follows is in it, and
 *  no sooner than some time after the last one, so that a vehicle full of faults does not fill the disk.
 *
 *  Times are in us, of one clock that goes forward.
 */
class FaultSaving
{
public:
    struct Settings
    {
        qint64 after = 10'000'000; //!< the fault
        qint64 apart = 60'000'000; //!< from one saving to the next
    };

    FaultSaving()
        : FaultSaving(Settings())
    {
    }
    explicit FaultSaving(const Settings &settings)
        : m_settings(settings)
    {
    }

    /*! A fault came at \a time. One that comes while another one waits is saved with it. */
    void handleFault(qint64 time);
    /*! True once when it is time to save. */
    bool takeDue(qint64 now);
    bool isWaiting() const { return m_isWaiting; }

private:
    Settings m_settings;
    bool m_isWaiting = false;
    bool m_hasSaved = false;
    qint64 m_due = 0;
    qint64 m_lastSaved = 0;
};
