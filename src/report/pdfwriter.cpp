// SPDX-License-Identifier: MIT
#include "pdfwriter.h"

#include "pdffile.h"

#include <interpreter/batterytexts.h>
#include <interpreter/datainterpreter.h>
#include <interpreter/objects.h>
#include <store/unnamedfile.h>
#include <store/wholefile.h>
#include <system/systemerrortext.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPrinter>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextStream>
#include <QVariant>

namespace {

QString styleSheet()
{
    QFile file(QStringLiteral(":/files/pdf.css"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/*! Text of several lines as one line of HTML. */
QString withHtmlLineBreaks(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1String("<br>"));
}

/*! HTML in which a "<" that begins no tag is text, as browsers show it; Qt would leave out all from there to the next
 *  ">", as of "Pedelec with speed limit (<45 km/h)".
 */
QString withPlainSmallerSigns(QString html)
{
    static const QRegularExpression noTag(QStringLiteral("<(?![A-Za-z/!?])"));
    return html.replace(noTag, QStringLiteral("&lt;"));
}

/*! Keeps empty pages out of a document in which every device table ends its page.
 *
 *  Where there is no room for the space below a table it would take a page of its own, and so would the end
 *  of the text behind the last table.
 */
void removeEmptyPages(QTextDocument &document)
{
    const QList<QTextFrame *> tables = document.rootFrame()->childFrames();
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextFrame *table : tables) {
        QTextFrameFormat format = table->frameFormat();
        if ((format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter) == 0)
            continue;
        format.setBottomMargin(0);
        if (table == tables.last())
            format.setPageBreakPolicy(QTextFormat::PageBreak_Auto);
        table->setFrameFormat(format);
    }
    cursor.endEditBlock();
}

/*! An empty file in the folder of another. It has no name where the system has such files, so that nothing of it stays
 *  whatever ends the program.
 */
class PrintFile
{
public:
    explicit PrintFile(const QString &path)
    {
        const int descriptor = UnnamedFile::open(QFileInfo(path).path());
        if (descriptor >= 0) {
            m_file = std::make_unique<QFile>();
            m_file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
            m_name = UnnamedFile::path(descriptor);
            return;
        }
        auto file = std::make_unique<QTemporaryFile>(path + QLatin1String(".XXXXXX"));
        file->open();
        m_name = file->fileName();
        m_file = std::move(file);
    }

    bool isOpen() const { return m_file->isOpen(); }
    QString errorString() const { return m_file->errorString(); }
    /*! By which the printer opens it. */
    QString name() const { return m_name; }
    QByteArray readAll() { return m_file->readAll(); }

private:
    std::unique_ptr<QFile> m_file;
    QString m_name;
};

} // namespace

pdfWriter::pdfWriter()
    : m_document(std::make_unique<QTextDocument>())
{
    m_document->setUndoRedoEnabled(false);
    m_html += QLatin1String("<html><head></head><body>");
    m_html += QLatin1String("<style type=\"text/css\">");
    m_html += styleSheet();
    m_html += QLatin1String("</style>");
    // Deliberate: this tag closes nothing.
    m_html += QLatin1String("</div>");
    m_html += QLatin1String("<div class=\"center\">");
    m_html += QLatin1String("<h1 align=\"center\">Draxel Report</h1><br>");
}

pdfWriter::~pdfWriter() = default;

QString pdfWriter::homeFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
}

QString pdfWriter::pdfPath(const QString &folder)
{
    return folder + QLatin1String("/dx_report.pdf");
}

QString pdfWriter::htmlPath(const QString &folder)
{
    return folder + QLatin1String("/dx_report.html");
}

void pdfWriter::beginDeviceTable(const QString &title)
{
    m_html += QLatin1String("<table class=\"deviceTable\" cellspacing=\"0\" width=\"100%\">"
                            "<tr><td  class=\"deviceTitle\" align=\"center\">");
    m_html += title;
    m_html += QLatin1String("</td></tr>"
                            "<tr><td class=\"inTable\">");
}

void pdfWriter::beginSectionTable(const QString &title)
{
    m_html += QLatin1String("<table class=\"describeTable\" cellspacing=\"0\" width=\"100%\">"
                            "<tr><td  class=\"describeTitle\" colspan=\"2\" align=\"center\">");
    m_html += title;
    m_html += QLatin1String("</td></tr>");
}

void pdfWriter::endSectionTable()
{
    m_html += QLatin1String("</table>");
}

void pdfWriter::endDeviceTable()
{
    m_rowIndex = 0;
    m_html += QLatin1String("</table></td></tr></table>");
}

void pdfWriter::addRow(const QString &name, const QString &text)
{
    m_html += m_rowIndex % 2 == 0 ? QLatin1String("<tr class=\"alt1\"><td class=\"itemName\" width=\"60%\">")
                                  : QLatin1String("<tr class=\"alt2\"><td class=\"itemName\" width=\"60%\">");
    // Deliberate: the texts are not escaped.
    m_html += name;
    m_html += QLatin1String("</td><td class=\"itemInter\">");
    m_html += text;
    m_html += QLatin1String("</td></tr>");
    ++m_rowIndex;
}

void pdfWriter::addObjectRow(quint16 index, const QVariant &value)
{
    // Deliberate: name and text are those of sub-index 1, whichever entry the value is of.
    addRow(DataInterpreter::objectName(index, 1), DataInterpreter::formatValue(index, 1, value));
}

void pdfWriter::addErrorRegisterRow(const QVariant &value)
{
    // Deliberate: the name is not translated, and the line breaks of the text stay as they are.
    addRow(QStringLiteral("Error register"), DataInterpreter::interpretErrorRegister(value));
}

void pdfWriter::addDeviceInformationRow(const QVariant &value)
{
    // Deliberate: the name is not translated.
    addRow(QStringLiteral("Device information"),
           withHtmlLineBreaks(DataInterpreter::interpretDeviceType(value)));
}

void pdfWriter::addDeviceStatusRows(const QVariant &value)
{
    QString flags;
    QString state;
    DataInterpreter::interpretDeviceStatus(value, flags, state);
    addRow(DataInterpreter::objectName(Object::deviceStatus, 1), flags);
    addRow(tr("Draxel FSA state"), state);
}

void pdfWriter::addBatteryStatusRow(const QVariant &value)
{
    Qt::GlobalColor unusedColor = Qt::black;
    addRow(tr("Battery Status"),
           DataInterpreter::interpretFsaState(batteryState(value.toUInt()), unusedColor));
}

bool pdfWriter::writeFiles(const QString &folder)
{
    m_errorString.clear();
    m_failure = Failure::None;
    m_html += QLatin1String("</div></body></html>");
    return writeHtml(htmlPath(folder)) && writePdf(pdfPath(folder));
}

bool pdfWriter::writeHtml(const QString &path)
{
    WholeFile file(path);
    if (!file.open(QIODevice::Text))
        return failed(path, file.errorString(), Failure::HtmlNotOpened);

    QByteArray html;
    QTextStream(&html, QIODevice::WriteOnly) << m_html;
    return (file.write(html) && file.commit()) || failed(path, file.errorString());
}

bool pdfWriter::writePdf(const QString &path)
{
    // The printer truncates its file at once and hardly reports errors, so it gets a file beside the target.
    PrintFile printed(path);
    if (!printed.isOpen())
        return failed(path, printed.errorString());

    print(printed.name());
    const QByteArray pdf = printed.readAll();
    if (!isCompletePdf(pdf))
        return failed(path, tr("printing broke off, perhaps because the disk is full"));

    WholeFile file(path);
    return (file.open() && file.write(pdf) && file.commit()) || failed(path, file.errorString());
}

void pdfWriter::print(const QString &path)
{
    constexpr qreal margin = 10; // mm

    QPrinter printer(QPrinter::ScreenResolution);
    printer.setOutputFileName(path);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter);

    m_document->setPageSize(printer.pageLayout().fullRectPoints().size());
    m_document->setHtml(withPlainSmallerSigns(m_html));
    removeEmptyPages(*m_document);
    m_document->print(&printer);
}

bool pdfWriter::failed(const QString &path, const QString &reason, Failure failure)
{
    m_failure = failure;
    m_errorString = tr("The file %1 cannot be written: %2.")
                        .arg(QDir::toNativeSeparators(path), systemErrorText(reason));
    return false;
}
