// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

#include <functional>

/*! A page of the window, with scroll bars where the screen is too small for it. */
class PageArea : public QScrollArea
{
    Q_OBJECT

public:
    using Maker = std::function<QWidget *()>;

    /*! Becomes the owner of \a page. */
    PageArea(QWidget *page, QWidget *parent);
    /*! \a make makes the page when it is needed for the first time: the window starts sooner without those that are not
     *  shown at once.
     */
    PageArea(Maker make, QWidget *parent);

    /*! Makes the page if it is not there yet. */
    void need();

protected:
    void showEvent(QShowEvent *event) override;

private:
    explicit PageArea(QWidget *parent);

    Maker m_make;
};
