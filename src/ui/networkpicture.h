// SPDX-License-Identifier: MIT
#pragma once

class QGraphicsScene;
class QGraphicsTextItem;
class QGraphicsView;
class QObject;

/*! Where the title stands and which way it goes. It reads bottom to top, so that its text covers \a y minus
 *  its width to \a y.
 */
struct TitleMotion
{
    double y = 0.0; // pixels, downward
    bool isMovingDown = true;
};

/*! The title's next step in a strip \a viewHeight pixels high: 3 pixels, turning 20 pixels before either end.
 */
TitleMotion nextTitleMotion(TitleMotion motion, int viewHeight, int textWidth);

/*! The narrow strip with the bus name that moves up and down while the bus is connected. */
class NetworkPicture
{
public:
    /*! Makes the scene, a child of \a parent, and shows it in \a view. Returns the title, owned by the scene.
     */
    static QGraphicsTextItem *create(QGraphicsView &view, QObject *parent);

    /*! Moves the title by one step. \a isMovingDown is its direction, which is turned at the ends of the
     *  view.
     */
    static void moveTitle(QGraphicsTextItem &title, const QGraphicsView &view, bool &isMovingDown);
};
