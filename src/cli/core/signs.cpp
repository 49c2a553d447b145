// SPDX-License-Identifier: MIT
#include "signs.h"

#include "terminal.h"

#include <QTextCodec>

#include <iterator>

namespace {

struct Sign
{
    const char *shape; // UTF-8
    const char *words;
    int colour; // ECMA-48, 30 to 37
};

// In the order of ComponentState
constexpr Sign signs[] = {
    {"✔", "good", 32}, {"•", "note", 36}, {"?", "not checked", 35}, {"▲", "warning", 33}, {"✖", "fault", 31},
};
static_assert(std::size(signs) == static_cast<std::size_t>(ComponentState::Fault) + 1);

const Sign &signOf(ComponentState state)
{
    return signs[static_cast<std::size_t>(state)];
}

ComponentState stateOf(Severity severity)
{
    switch (severity) {
    case Severity::Fault:
        return ComponentState::Fault;
    case Severity::Warning:
        return ComponentState::Warning;
    case Severity::Note:
        break;
    }
    return ComponentState::Note;
}

} // namespace

Signs::Style Signs::detectStyle()
{
    if (!Terminal::isTerminal(Terminal::Stream::Output))
        return Style::Words;
    const QTextCodec *codec = QTextCodec::codecForLocale();
    if (codec == nullptr || !codec->canEncode(QStringLiteral("✔•▲✖")))
        return Style::Words;
    const bool isColoured = qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
    return isColoured ? Style::ColouredShapes : Style::Shapes;
}

QString Signs::of(ComponentState state) const
{
    const Sign &sign = signOf(state);
    switch (m_style) {
    case Style::Words:
        return QLatin1String(sign.words) + QStringLiteral(": ");
    case Style::Shapes:
        return QString::fromUtf8(sign.shape) + QLatin1Char(' ');
    case Style::ColouredShapes:
        break;
    }
    return QStringLiteral("\x1b[%1m%2\x1b[0m ").arg(sign.colour).arg(QString::fromUtf8(sign.shape));
}

QString Signs::of(Severity severity) const
{
    return of(stateOf(severity));
}
