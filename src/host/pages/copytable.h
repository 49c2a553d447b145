// SPDX-License-Identifier: MIT
#pragma once

#include <QTableView>

class QAction;

/*! A table of rows whose cells can be copied (Ctrl+C, or the context menu): the chosen rows as lines, cells with tabs
 *  between them.
 */
class CopyTable : public QTableView
{
    Q_OBJECT

public:
    explicit CopyTable(QWidget *parent = nullptr);

    /*! The column that takes the room that is left. */
    void setWideColumn(int column);

    /*! What stands in the table while it has no rows: why, or what to do. */
    void setHint(const QString &hint);
    QString hint() const { return m_hint; }

    /*! The chosen rows as text; all when none is chosen. */
    virtual QString toText() const;

    void setModel(QAbstractItemModel *model) override;

public slots:
    virtual void copy();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitColumns();

    QAction *m_copy;
    QString m_hint;
    int m_wideColumn = 0;
};
