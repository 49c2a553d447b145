// SPDX-License-Identifier: MIT
#pragma once

#include "jsonplace.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <nlohmann/json_fwd.hpp>

#include <optional>

/*! An object of a document, whose members are asked for by name and kind.
 *
 *  A member that is missing or of another kind is noted as the document's fault, with its place, and an empty value is
 *  returned; so a reader asks for all that it needs and looks at the fault once. What is null counts as missing.
 *  A light handle on a document, to be used at once and not kept.
 */
class JsonObject
{
    Q_DECLARE_TR_FUNCTIONS(JsonObject)

public:
    static constexpr int longestText = 1024 * 1024; // bytes in UTF-8

    /*! \a value has to be an object; \a place has to outlive this. */
    JsonObject(const nlohmann::json &value, const JsonPlace &place);

    bool has(const char *key) const { return find(key) != nullptr; }
    QStringList keys() const;
    const JsonPlace &place() const { return m_place; }

    /*! Both limits are in range. */
    qint64 integer(const char *key, qint64 lowest, qint64 highest) const;
    std::optional<qint64> optionalInteger(const char *key, qint64 lowest, qint64 highest) const;

    double number(const char *key) const;

    QString text(const char *key, int longest = longestText) const;
    /*! Empty text when it is missing. */
    QString optionalText(const char *key, int longest = longestText) const;

    bool boolean(const char *key, bool fallback) const;

    /*! A number (`qlonglong`, `qulonglong` beyond it, `double`) or a text; invalid for everything else. */
    QVariant scalar(const char *key) const;

    /*! Calls handle(const JsonObject &) with a member that is an object; a missing one is a fault. */
    template<typename Handler>
    void forObject(const char *key, Handler handle) const
    {
        const nlohmann::json *member = findRequired(key);
        if (member == nullptr)
            return;
        const JsonPlace place(&m_place, key);
        const JsonObject object(*member, place);
        if (!place.isFaulty())
            handle(object);
    }

    /*! Calls handle(const JsonObject &) for each object of an array. A missing array is a fault, and so is an element
     *  that is no object. Ends at the first fault.
     */
    template<typename Handler>
    void forEachObject(const char *key, Handler handle) const
    {
        const JsonPlace place(&m_place, key);
        const int size = arraySize(key);
        for (int position = 0; position < size && !place.isFaulty(); ++position) {
            const JsonPlace elementPlace(&place, position);
            const JsonObject object(element(key, position), elementPlace);
            if (!elementPlace.isFaulty())
                handle(object);
        }
    }

    /*! The same for the top of a document whose elements stand each for itself: handle(const JsonObject &, const JsonFault
     *  &) gets the element's own fault, and one that is wrong keeps nothing from the others. A missing array is none.
     */
    template<typename Handler>
    void forEachObjectApart(const char *key, Handler handle) const
    {
        const int size = has(key) ? arraySize(key) : 0;
        for (int position = 0; position < size; ++position) {
            JsonFault fault;
            const JsonPlace top(&fault);
            const JsonPlace list(&top, key);
            const JsonPlace elementPlace(&list, position);
            handle(JsonObject(element(key, position), elementPlace), fault);
        }
    }

    /*! The whole numbers of an array; a missing one is a fault, and so is an element that is none or out of range. */
    QVector<qint64> integers(const char *key, qint64 lowest, qint64 highest) const;

    /*! The texts of an array; a missing one is a fault, and so is an element that is no text. */
    QStringList texts(const char *key, int longest = longestText) const;

private:
    const nlohmann::json *find(const char *key) const;
    const nlohmann::json *findRequired(const char *key) const;
    int arraySize(const char *key) const;
    const nlohmann::json &element(const char *key, int position) const;
    void complain(const char *key, const QString &problem) const;

    const nlohmann::json *m_value = nullptr; // null when it is no object
    const JsonPlace &m_place;
};
