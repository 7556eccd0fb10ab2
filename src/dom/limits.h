#pragma once

#include <QtGlobal>

/// What is read of a file that a stranger may have written. Beyond these limits a file or a template is given up with a
/// trace: Qt's parsers recurse on the stack of the host's GUI thread and expand entities without bound.
namespace limits {

/// Deepest nesting of elements in a file that is given to a parser. The place of an include may lie as deep, counted
/// over all files that are open.
constexpr int kMaxFileDepth = 500;
/// Deepest nesting of parentheses in a file's content models; no parser that the library calls needs one.
constexpr int kMaxContentModelDepth = 500;
/// How much more than the file's own size its text and attributes may come to through entities, in bytes.
constexpr qint64 kMaxEntityGrowth = qint64 { 16 } * 1024 * 1024;
/// Deepest nesting of a template while its schema is read.
constexpr int kMaxTemplateDepth = 500;
/// Most attributes of one element of a template: Qt finds an attribute by its index only by counting up to it.
constexpr int kMaxElementAttributes = 2000;
/// Most elements and most attributes of all declarations of a schema and its includes together.
constexpr int kMaxRunElements = 500000;
constexpr int kMaxRunAttributes = 2000000;
/// Most includes open within each other.
constexpr int kMaxOpenIncludes = 64;
/// Most includes in a run.
constexpr int kMaxIncludes = 1000;

} // namespace limits
