// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringMatcher>

#include <optional>
#include <vector>

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
    };

    /*! \a layout: what the frame carries; may be null. */
    static Key keyOf(const TraceFrame &frame, const PdoLayout *layout);
    /*! Empty for one whose words are not worth keeping. */
    static std::optional<Key> keyOf(const SdoTransfer &transfer);

    explicit TextSearch(const QString &text)
        : m_matcher(text, Qt::CaseInsensitive)
        , m_places(text.isEmpty() ? 0 : places)
    {
    }

    /*! Whether the text, which is not empty, stands in the words with a key, which \a words makes. */
    template<typename Words>
    bool isIn(const std::optional<Key> &key, const Words &words)
    {
        if (!key)
            return m_matcher.indexIn(words()) >= 0;
        Place &place = m_places[placeOf(*key)];
        Slot *slot = place.find(*key);
        if (slot == nullptr) {
            slot = &place.giveAway();
            *slot = {*key, true, m_matcher.indexIn(words()) >= 0};
        }
        return slot->isThere;
    }

private:
    static constexpr std::size_t places = 1 << 17;

    struct Slot
    {
        Key key{};
        bool isUsed = false;
        bool isThere = false;
    };

    /*! What was looked into last of all that has its place here: two, or what comes by turns would be made anew each time.
     */
    struct alignas(64) Place
    {
        Slot first;
        Slot second;

        Slot *find(const Key &key)
        {
            if (first.isUsed && first.key == key)
                return &first;
            return second.isUsed && second.key == key ? &second : nullptr;
        }
        Slot &giveAway()
        {
            second = first;
            return first;
        }
    };

    static std::size_t placeOf(const Key &key);

    QStringMatcher m_matcher;
    std::vector<Place> m_places;
};
