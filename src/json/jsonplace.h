// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! What is wrong in a document, with its place: the first of all that is found. Empty while nothing is. */
struct JsonFault
{
    QString text;

    bool isEmpty() const { return text.isEmpty(); }
};

/*! Where a value stands in a document, as the way to it: "nodes[2].entries[0].index".
 *
 *  A link of a chain on the stack: the text is only made when something is wrong. Every link has to outlive those
 *  below it, and the fault all of them.
 */
class JsonPlace
{
public:
    /*! The top of a document. */
    explicit JsonPlace(JsonFault *fault)
        : m_fault(fault)
    {
    }
    /*! A member of an object; \a key stays the caller's. */
    JsonPlace(const JsonPlace *parent, const char *key)
        : m_parent(parent)
        , m_key(key)
        , m_fault(parent->m_fault)
    {
    }
    /*! An element of an array, from 0 on. */
    JsonPlace(const JsonPlace *parent, int position)
        : m_parent(parent)
        , m_position(position)
        , m_fault(parent->m_fault)
    {
    }

    QString toString() const;

    /*! Notes that \a problem stands here, unless something was wrong before. */
    void complain(const QString &problem) const;

    bool isFaulty() const { return !m_fault->isEmpty(); }

private:
    const JsonPlace *m_parent = nullptr;
    const char *m_key = nullptr;
    int m_position = -1;
    JsonFault *m_fault;
};
