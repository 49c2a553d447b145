// SPDX-License-Identifier: MIT
#pragma once

#include <cli/core/exitstatus.h>
#include <trace/decoding/tracefilter.h>

#include <QCoreApplication>

#include <optional>

class CommandArguments;

/*! The options by which "trace show" chooses lines: --node, --kind, --object, --text, --wrong. */
class ShowFilter
{
    Q_DECLARE_TR_FUNCTIONS(ShowFilter)

public:
    static void addOptions(CommandArguments &options);

    /*! An exit status after a complaint. */
    std::optional<ExitStatus> parse(const CommandArguments &options);

    const TraceFilter &filter() const { return m_filter; }

private:
    std::optional<ExitStatus> parseNodes(const CommandArguments &options);
    std::optional<ExitStatus> parseKinds(const CommandArguments &options);
    std::optional<ExitStatus> parseObjects(const CommandArguments &options);

    TraceFilter m_filter;
};
