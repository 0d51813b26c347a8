#pragma once

#include "base/error.h"

#include <QByteArray>

namespace tamsel {

struct XmlLimits {
    int attributes = 32; ///< of one element
    int depth = 16;      ///< of elements in elements
};

/// Looks over a document before it is parsed, once from its begin to its end: the toolkit's parser
/// compares every attribute of an element with every other, and every name with every namespace
/// above it. Refuses a document type, too. What is no XML is left for the parser to refuse.
Result<void> checkXmlShape(const QByteArray& xml, const XmlLimits& limits);

} // namespace tamsel
