// SPDX-License-Identifier: MIT
#include "textreader.h"

#include "textscan.h"
#include "tracefilestr.h"

#include <cstring>

TraceReader::Step TextReader::next(TraceFrame *frame)
{
    TextLine line;
    for (;;) {
        *frame = TraceFrame();
        if (const char *const end = parseUsual(m_lines.rest(), frame)) {
            m_lines.skipTo(end);
            return Step::Frame;
        }
        switch (m_lines.next(&line)) {
        case LineReader::Step::Line:
            break;
        case LineReader::Step::TooLong:
            return complain(
                m_lines.number(),
                TraceFilesTr::tr("The line has more than %1 characters.").arg(LineReader::longest));
        case LineReader::Step::Failed:
            return complain(m_lines.number() + 1, m_lines.errorString());
        case LineReader::Step::End:
            return Step::End;
        }
        *frame = TraceFrame();
        const Line what = parse(line, frame);
        if (what == Line::Frame)
            return Step::Frame;
        if (what == Line::Wrong || what == Line::Unknown)
            return complain(m_lines.number(), m_sentence);
    }
}

const char *TextReader::parseUsual(TextLine rest, TraceFrame *frame)
{
    Q_UNUSED(rest)
    Q_UNUSED(frame)
    return nullptr;
}

TextReader::Line TextReader::wrong(const QString &sentence)
{
    m_sentence = sentence;
    return Line::Wrong;
}

TextReader::Line TextReader::notUnderstood(TextLine line)
{
    wrong(TraceFilesTr::tr("This is no frame: \"%1\".").arg(TextScan::excerpt(line)));
    return Line::Unknown;
}

TextReader::Line TextReader::tooLargeId()
{
    return wrong(TraceFilesTr::tr("The identifier is larger than one can be."));
}

TextReader::Line TextReader::flexibleDataRate()
{
    return wrong(TraceFilesTr::tr("A CAN FD frame; only classic frames are read."));
}

TextReader::Line TextReader::tooManyChannels()
{
    return wrong(TraceFilesTr::tr("There are more than %1 channels.").arg(mostChannels));
}

int TextReader::channelOf(const char *begin, const char *end)
{
    const auto size = static_cast<int>(end - begin);
    const auto isIt = [begin, size](const QByteArray &name) {
        return name.size() == size && std::memcmp(name.constData(), begin, static_cast<size_t>(size)) == 0;
    };
    // Nearly always the one of the line before.
    if (m_lastChannel < m_channels.size() && isIt(m_channels[m_lastChannel]))
        return static_cast<int>(m_lastChannel);
    for (m_lastChannel = 0; m_lastChannel < m_channels.size(); ++m_lastChannel) {
        if (isIt(m_channels[m_lastChannel]))
            return static_cast<int>(m_lastChannel);
    }
    if (m_channels.size() >= mostChannels)
        return -1;
    m_channels.emplace_back(begin, size);
    headToFill()->channels.append(QString::fromUtf8(begin, size));
    return static_cast<int>(m_lastChannel);
}
