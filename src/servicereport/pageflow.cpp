// SPDX-License-Identifier: MIT
#include "pageflow.h"

namespace {

class Flow
{
public:
    Flow(const QVector<FlowPiece> &pieces, qreal pageHeight)
        : m_pieces(pieces)
        , m_pageHeight(pageHeight)
    {
    }

    QVector<PlacedPiece> place()
    {
        for (int i = 0; i < m_pieces.size();) {
            const int end = groupEnd(i);
            if (m_top > 0 && m_top + height(i, end) > m_pageHeight && fitsOnPage(i, end))
                beginPage();
            for (; i < end; ++i)
                placePiece(i);
        }
        return m_placed;
    }

private:
    /*! Behind the pieces that stay together with the one at \a first. */
    int groupEnd(int first) const
    {
        int last = first;
        while (last + 1 < m_pieces.size() && (m_pieces.at(last).keepsWithNext || m_pieces.at(last).isSpace))
            ++last;
        return last + 1;
    }

    qreal height(int first, int end) const
    {
        qreal height = 0;
        for (int i = first; i < end; ++i)
            height += m_pieces.at(i).height;
        return height;
    }

    bool fitsOnPage(int first, int end) const { return height(first, end) <= m_pageHeight; }

    void beginPage()
    {
        ++m_page;
        m_top = 0;
    }

    void placePiece(int piece)
    {
        const FlowPiece &content = m_pieces.at(piece);
        if (content.isSpace && m_top <= 0)
            return;
        if (m_top > 0 && m_top + content.height > m_pageHeight)
            beginPage();
        if (content.isSpace && m_top <= 0)
            return;
        if (m_top <= 0)
            addHeads(content.head);
        add(piece);
    }

    void addHeads(int head)
    {
        if (head < 0)
            return;
        addHeads(m_pieces.at(head).head);
        add(head);
    }

    void add(int piece)
    {
        m_placed.append({piece, m_page, m_top});
        m_top += m_pieces.at(piece).height;
    }

    const QVector<FlowPiece> &m_pieces;
    qreal m_pageHeight;
    QVector<PlacedPiece> m_placed;
    int m_page = 0;
    qreal m_top = 0;
};

} // namespace

QVector<PlacedPiece> flowOntoPages(const QVector<FlowPiece> &pieces, qreal pageHeight)
{
    return Flow(pieces, pageHeight).place();
}
