// SPDX-License-Identifier: MIT
#pragma once

#include "jsonplace.h"

#include <QCoreApplication>
#include <QString>

#include <rapidjson/document.h>

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
    static constexpr int longestText = 1024 * 1024; // characters

    /*! \a value has to be an object; \a place has to outlive this. */
    JsonObject(const rapidjson::Value &value, const JsonPlace &place);

    bool has(const char *key) const { return find(key) != nullptr; }
    const JsonPlace &place() const { return m_place; }

    /*! Both limits are in range. */
    qint64 integer(const char *key, qint64 lowest, qint64 highest) const;
    std::optional<qint64> optionalInteger(const char *key, qint64 lowest, qint64 highest) const;

    double number(const char *key) const;

    QString text(const char *key, int longest = longestText) const;
    /*! Empty text when it is missing. */
    QString optionalText(const char *key, int longest = longestText) const;

    bool boolean(const char *key, bool fallback) const;

    /*! The member as it is; null when it is missing, which is no fault. */
    const rapidjson::Value *find(const char *key) const;

    /*! Calls handle(const JsonObject &) for each object of an array. A missing array is a fault, and so is an element
     *  that is no object. Ends at the first fault.
     */
    template<typename Handler>
    void forEachObject(const char *key, Handler handle) const
    {
        const rapidjson::Value *array = findArray(key);
        if (array == nullptr)
            return;
        const JsonPlace place(&m_place, key);
        int position = 0;
        for (const rapidjson::Value &element : array->GetArray()) {
            const JsonPlace elementPlace(&place, position++);
            const JsonObject object(element, elementPlace);
            if (elementPlace.isFaulty())
                return;
            handle(object);
            if (elementPlace.isFaulty())
                return;
        }
    }

private:
    const rapidjson::Value *findArray(const char *key) const;
    void complain(const char *key, const QString &problem) const;

    const rapidjson::Value *m_value = nullptr; // null when it is no object
    const JsonPlace &m_place;
};
