// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringMatcher>

#include <optional>

struct PdoLayout;
struct SdoTransfer;
struct TraceFrame;

/*! Looks for a text in the lines of a trace. Most of them say what another has said: what makes the same words is looked into
 *  once.
 */
class TextSearch
{
public:
    /*! Of which lines the words are the same. */
    struct Key
    {
        quint64 data;
        quint64 what;
        quint64 how;

        friend bool operator==(const Key &a, const Key &b)
        {
            return a.data == b.data && a.what == b.what && a.how == b.how;
        }
        friend uint qHash(const Key &key, uint seed)
        {
            constexpr quint64 odd = 0x9E3779B97F4A7C15; // spreads what is near together
            return ::qHash((key.data ^ key.what << 1 ^ key.how) * odd, seed);
        }
    };

    /*! \a layout: what the frame carries; may be null. */
    static Key keyOf(const TraceFrame &frame, const PdoLayout *layout);
    /*! Empty for one whose words are not worth keeping. */
    static std::optional<Key> keyOf(const SdoTransfer &transfer);

    explicit TextSearch(const QString &text)
        : m_matcher(text, Qt::CaseInsensitive)
    {
    }

    /*! Whether the text stands in the words with a key, which \a words makes. */
    template<typename Words>
    bool isIn(const std::optional<Key> &key, const Words &words)
    {
        if (key) {
            const auto known = m_known.constFind(*key);
            if (known != m_known.constEnd())
                return *known;
        }
        const bool isThere = m_matcher.indexIn(words()) >= 0;
        if (key && m_known.size() < mostKnown)
            m_known.insert(*key, isThere);
        return isThere;
    }

private:
    static constexpr int mostKnown = 1 << 18;

    QStringMatcher m_matcher;
    QHash<Key, bool> m_known;
};
