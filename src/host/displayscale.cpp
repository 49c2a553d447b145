// SPDX-License-Identifier: MIT
#include "displayscale.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/*! Screens with other factors need theirs. */
bool isBetterUnscaled()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto isNear
        = [](const QScreen *screen) { return DisplayScale::isNearOne(screen->devicePixelRatio()); };
    const auto isOne = [](const QScreen *screen) { return qFuzzyCompare(screen->devicePixelRatio(), 1.0); };
    return std::all_of(screens.begin(), screens.end(), isNear)
           && !std::all_of(screens.begin(), screens.end(), isOne);
}

} // namespace

bool DisplayScale::isNearOne(qreal factor)
{
    constexpr qreal tolerance = 0.05;
    return std::abs(factor - 1) <= tolerance;
}

std::unique_ptr<QApplication> DisplayScale::makeApplication(int &argc, char *argv[])
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    // Rounded, 150 % is 200 %, and the window larger than the screen.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
    const std::vector<char *> arguments(argv, argv + argc); // Qt takes its own out of them
    auto application = std::make_unique<QApplication>(argc, argv);
    if (!isBetterUnscaled())
        return application;
    // The factors are known only now, and that they do not count must be said before.
    application.reset();
    argc = static_cast<int>(arguments.size());
    std::copy(arguments.begin(), arguments.end(), argv);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
    return std::make_unique<QApplication>(argc, argv);
}
