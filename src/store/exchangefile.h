// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class NodeStore;
class QDateTime;

/*! The exchange file: everything a NodeStore holds, as a small XML document (".dxxml").
 *
 *      <?xml version ="1.0" encoding="UTF-8" ?>
 *      <dxtoolstorage pl_overwiew="1.0" date="Sun Nov 15 17:29:46 2026">
 *          <nodes>
 *              <node nodeid="1">
 *                  <object index="0x6000" sub="0x00" value="3" />
 *              </node>
 *          </nodes>
 *      </dxtoolstorage>
 *
 *  Every line ends with a line feed. Only nodes of the store's node list are written, in its order.
 */

/*! Pieces in which text goes to the parser and to the disk, in characters: small beside the text itself. */
constexpr int exchangeChunkSize = 64 * 1024;

/*! The document for \a store, dated \a date. The store is not changed. */
QString exportToText(const NodeStore &store, const QDateTime &date);

/*! Replaces values and node list of \a store by those of a document.
 *
 *  Reads as far as it can: numbers that are none count as 0, unknown elements are skipped, and text that
 *  breaks off or is no XML leaves what stood before the error. A document that declares entities or attributes
 *  is refused like an error, where the declaration stands: these can grow beyond any memory, and an exchange
 *  file has no use for them. So are tags with more than 32 attributes, more than 256 levels of elements, more
 *  than 256 namespaces, and more nodes than a vehicle can have (see ExchangeReader).
 *
 *  Returns whether the text was read to its end; the store has what was read in either case. A file that is
 *  written as exportToText() writes it needs no parser, see exchangescanner.h.
 */
bool importFrom(const QString &text, NodeStore &store);

/*! The same, always by the XML parser. The result does not depend on \a chunkSize, which has to be positive. */
bool importByParser(const QString &text, NodeStore &store, int chunkSize = exchangeChunkSize);

/*! Says in a sentence why \a text is not a good exchange file, with line and column; empty when it is one.
 *
 *  Stricter than importFrom(), for use before it: the text has to be XML to its end, so that a file that was
 *  cut off is found, and there has to be a node in it.
 */
QString exchangeProblem(const QString &text);

/*! When \a text says that it was exported, in local time; invalid when it does not say. */
QDateTime exchangeDate(const QString &text);

/*! importFrom() and exchangeProblem() in one, for the time of one: fills \a store as the former does and returns what the
 *  latter says.
 */
QString importChecked(const QString &text, NodeStore &store);

/*! The longest text that loadExchangeFile() reads, in characters; a vehicle of 127 nodes has 2 million. */
constexpr int maximumExchangeFileSize = 64 * 1024 * 1024;

/*! Writes a document to a file; the file stays as it was unless all could be written. A pipe or device is
 *  written to and stays what it is.
 *
 *  On failure returns false and, where given, sets \a errorMessage to a sentence for the user.
 */
bool saveExchangeFile(const QString &fileName, const QString &text, QString *errorMessage = nullptr);

/*! Reads a whole file into \a text. A file larger than maximumExchangeFileSize is none, and no memory is spent on it.
 *
 *  On failure returns false, leaves \a text as it was and, where given, sets \a errorMessage to a sentence
 *  for the user.
 */
bool loadExchangeFile(const QString &fileName, QString &text, QString *errorMessage = nullptr);
