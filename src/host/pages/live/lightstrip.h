// SPDX-License-Identifier: MIT
#pragma once

#include <live/health/healthjudgement.h>

#include <QWidget>

#include <array>

class QLabel;

/*! The lights of a bus side by side: shape and colour, the word, and one sentence; what else was found is in the tool tip.
 */
class LightStrip : public QWidget
{
    Q_OBJECT

public:
    explicit LightStrip(QWidget *parent = nullptr);

    /*! None: nothing is known yet. */
    void setLights(const QVector<HealthLight> &lights);

protected:
    void changeEvent(QEvent *event) override;

private:
    static constexpr std::size_t count = 3;

    struct Light
    {
        QWidget *box = nullptr;
        QLabel *sign = nullptr;
        QLabel *title = nullptr;
        QLabel *sentence = nullptr;
    };

    Light makeLight(int number);
    void show(const Light &light, const HealthLight &shown);
    static QString name(HealthLight::Subject subject);
    static QString details(const HealthLight &light);

    std::array<Light, count> m_lights;
    QVector<HealthLight> m_shown;
};
