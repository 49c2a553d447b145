// SPDX-License-Identifier: MIT
#include "detailtables.h"

#include "tablewriter.h"

#include <details/nodedetails.h>

#include <QTableWidget>

namespace {

/*! Keeps a widget from painting while it is filled. */
class UpdatesPause
{
public:
    explicit UpdatesPause(QWidget &widget)
        : m_widget(widget)
        , m_wasPaused(widget.testAttribute(Qt::WA_ForceUpdatesDisabled))
    {
        m_widget.setUpdatesEnabled(false);
    }
    ~UpdatesPause() { m_widget.setUpdatesEnabled(!m_wasPaused); }
    Q_DISABLE_COPY(UpdatesPause)

private:
    QWidget &m_widget;
    bool m_wasPaused;
};

} // namespace

void DetailTables::showNode(quint8 nodeId)
{
    const UpdatesPause parametersPause(m_parameters);
    const UpdatesPause valuesPause(m_values);
    TableWriter parameters(m_parameters);
    TableWriter values(m_values);
    NodeDetails(m_store, parameters, values).showNode(nodeId);
}
