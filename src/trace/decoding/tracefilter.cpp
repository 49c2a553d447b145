// SPDX-License-Identifier: MIT
#include "tracefilter.h"

#include "framesort.h"
#include "pdolayout.h"

#include <algorithm>

bool TraceFilter::isEmpty() const
{
    return nodes.none() && kinds.none() && objects.isEmpty() && text.isEmpty() && !channel && !isWrongOnly;
}

bool TraceFilter::fits(const FrameSort &sort, quint8 ofChannel) const
{
    if (isWrongOnly && !isWrong(sort.mark))
        return false;
    if (kinds.any() && !kinds.test(static_cast<std::size_t>(sort.kind)))
        return false;
    if (channel && *channel != ofChannel)
        return false;
    const bool isForAll = sort.kind == FrameKind::Nmt && sort.nodeId == 0;
    return nodes.none() || isForAll || (sort.nodeId < nodes.size() && nodes.test(sort.nodeId));
}

bool TraceFilter::fitsObject(CanOpen::ObjectKey object) const
{
    return objects.isEmpty() || std::any_of(objects.begin(), objects.end(), [object](const Object &wanted) {
               return wanted.index == object.index
                      && (wanted.subIndex < 0 || wanted.subIndex == object.subIndex);
           });
}

bool TraceFilter::fitsObjects(const PdoLayout *layout) const
{
    if (objects.isEmpty())
        return true;
    return layout != nullptr && std::any_of(objects.begin(), objects.end(), [layout](const Object &wanted) {
               return layout->contains(wanted.index, wanted.subIndex);
           });
}

bool TraceFilter::fitsText(const QString &words) const
{
    return text.isEmpty() || words.contains(text, Qt::CaseInsensitive);
}
