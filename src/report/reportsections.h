// SPDX-License-Identifier: MIT
#pragma once

class NodeStore;
class pdfWriter;

/*! Writes the rows of the report: one device table for each node of a known component class.
 *
 *  The rows resemble those of the window's detail tables, and differ from them on purpose. Objects that are
 *  not stored give no row. A node with several virtual devices is written once, as the first of them. A node
 *  without a known class is left out, so that there may be no table at all.
 *
 *  A light handle on the store, to be used at once and not kept.
 */
class ReportSections
{
public:
    explicit ReportSections(const NodeStore &store)
        : m_store(store)
    {
    }

    /*! Appends the tables of all nodes, in the order of the store's list of nodes. */
    void write(pdfWriter &writer) const;

private:
    const NodeStore &m_store;
};
