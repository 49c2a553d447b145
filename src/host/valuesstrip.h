// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

class QLabel;
class ShownVehicle;

/*! A line above the values that says what is to be known of them: that they are old, not complete, or from a
 *  file. Hidden while there is nothing to say.
 */
class ValuesStrip : public QFrame
{
    Q_OBJECT

public:
    /*! \a vehicle must outlive the strip. */
    explicit ValuesStrip(const ShownVehicle *vehicle, QWidget *parent = nullptr);

    /*! Says what is to be said now. */
    void refresh();

protected:
    void changeEvent(QEvent *event) override;

private:
    const ShownVehicle *m_vehicle;
    QLabel *m_sign;
    QLabel *m_sentence;
};
