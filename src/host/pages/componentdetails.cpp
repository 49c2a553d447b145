// SPDX-License-Identifier: MIT
#include "componentdetails.h"

#include "checkuprecord.h"
#include "componenttext.h"
#include "copytable.h"
#include "detailsbrowser.h"
#include "lighticon.h"

#include <QEvent>
#include <QPainter>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int largestLight = 18;

/*! Links are only where tool tips are: they look like text. */
constexpr char textStyle[]
    = "h3{margin:0 0 2px 0}h4{margin:10px 0 2px 0}p{margin:2px 0}.aside{color:#666}.advice{color:#444}"
      ".head{color:#666}a{color:#000;text-decoration:none}ul{margin:0 0 0 -24px}td{vertical-align:top}";

QImage imageOf(const ReportDrawing &drawing, qreal ratio)
{
    QImage image((drawing.size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintDrawing(painter, drawing, QPointF(0, 0), 1);
    return image;
}

} // namespace

ComponentDetails::ComponentDetails(QWidget *parent)
    : QWidget(parent)
    , m_tabs(new QTabWidget(this))
    , m_text(new DetailsBrowser(this))
    , m_values(new CopyTable(this))
    , m_gaps(new CopyTable(this))
    , m_valueModel(EntryModel::Content::Values)
    , m_gapModel(EntryModel::Content::Gaps)
{
    m_tabs->setObjectName(QStringLiteral("componentTabs"));
    m_tabs->setDocumentMode(true);
    m_text->setObjectName(QStringLiteral("componentText"));
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setOpenLinks(false);
    m_text->document()->setDefaultStyleSheet(QLatin1String(textStyle));
    m_values->setObjectName(QStringLiteral("componentValues"));
    m_values->setModel(&m_valueModel);
    m_gaps->setObjectName(QStringLiteral("componentGaps"));
    m_gaps->setModel(&m_gapModel);
    m_gaps->setWideColumn(EntryModel::ValueColumn);
    m_tabs->addTab(m_text, QString());
    m_tabs->addTab(m_values, QString());
    m_tabs->addTab(m_gaps, QString());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tabs);
    retranslate();
}

void ComponentDetails::showComponent(const CheckupRecord &record, quint8 nodeId)
{
    const SnapshotNode *node = record.snapshot.find(nodeId);
    setNode(node != nullptr ? *node : SnapshotNode());
    const ComponentText text(record, nodeId);
    setText(text.html(), text.pictures());
}

void ComponentDetails::showValues(const SnapshotNode &node, const QString &sentence)
{
    setNode(node);
    setText(QStringLiteral("<p>%1</p>").arg(sentence.toHtmlEscaped()), {});
}

void ComponentDetails::showSentence(const QString &sentence)
{
    showValues(SnapshotNode(), sentence);
}

void ComponentDetails::setText(const QString &html, const QVector<ReportDrawing> &pictures)
{
    m_text->clear();
    addImages(pictures);
    m_text->setHtml(html);
}

void ComponentDetails::addImages(const QVector<ReportDrawing> &pictures)
{
    const qreal ratio = devicePixelRatioF();
    for (const ReportMark mark : {ReportMark::Good, ReportMark::Note, ReportMark::NotChecked,
                                  ReportMark::Warning, ReportMark::Fault}) {
        m_text->document()->addResource(QTextDocument::ImageResource,
                                        QUrl(QStringLiteral("light:%1").arg(int(mark))),
                                        LightIcon::image(mark, largestLight, ratio));
    }
    for (int i = 0; i < pictures.size(); ++i) {
        m_text->document()->addResource(QTextDocument::ImageResource,
                                        QUrl(QStringLiteral("picture:%1").arg(i)),
                                        imageOf(pictures.at(i), ratio));
    }
}

void ComponentDetails::setNode(const SnapshotNode &node)
{
    m_valueModel.setNode(node);
    m_gapModel.setNode(node);
    m_isNothingRead = node.id != 0 && node.end != SnapshotEnd::Complete && m_valueModel.rowCount() == 0;
    retranslate();
}

void ComponentDetails::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ComponentDetails::retranslate()
{
    m_tabs->setTabText(0, tr("Fin&dings"));
    m_tabs->setTabText(1, tr("&All values (%1)").arg(m_valueModel.rowCount()));
    // Who was silent or stopped was asked for little, and none of its values was read.
    m_tabs->setTabText(2, m_isNothingRead ? tr("&Not read (all)")
                                          : tr("&Not read (%1)").arg(m_gapModel.rowCount()));
}
