// What the layers below the object model ask of it.
//
// A few questions of core and build are about data objects, parsers or the object factory, which
// are above them. Each question is one pointer of the table below. krofx/model/hooks.cpp gives all
// the answers; it is constant data that the layers below refer to by name, so no link can leave it
// out and nothing depends on the order in which objects of static storage are made. A program made
// of the layers below the model alone defines a table of its own.

#ifndef KROFX_CORE_INTERNAL_HOOKS_H_
#define KROFX_CORE_INTERNAL_HOOKS_H_

#include "krofx/core/status.h"
#include "krofx/core/types.h"

class KRBuilder;
class KRDataObj;
class KRParseException;
class KRParser;
class KRString;

namespace krofx::internal {

/// The questions. None of the functions may log a warning.
struct Hooks {
  /// @name Elements of arrays and records of logs
  /// Each makes one, null when memory is exhausted.
  /// @{
  u16* (*newUShort)();
  KRString* (*newString)();
  KRParseException* (*newParseException)();
  /// @}

  /// Gives the object that a parser is filling, which becomes the object of a warning that came
  /// without one. Null in a program without parsers.
  KRDataObj* (*currentObjectOf)(KRParser& parser);

  /// Writes the root of a tree, without its own tags.
  /// @return as KRBuilder::Build.
  KRBuildStatus (*buildRoot)(KRDataObj& root, KRBuilder& builder);
  /// Finds the first object of a tree that lacks a required tag; null when none does.
  KRDataObj* (*findIncomplete)(KRDataObj& root);
};

/// The table in force. Tests replace its entries, before other threads run.
extern Hooks hooks;

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_HOOKS_H_
