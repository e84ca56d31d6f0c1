// SPDX-License-Identifier: MIT
#ifndef GRBSIM_GCFFILE_H
#define GRBSIM_GCFFILE_H

#include <string>

#include "ParameterStore.h"

namespace grbsim {

/// GCF files: the configuration of a channel as text. The first line that is neither blank nor a comment is
/// "[GRB_CONFIGURATION]", each further line "NAME = value" with a decimal or 0x-prefixed value; blank lines and lines
/// that begin with # are passed over.
///
/// Both fail with kStatusFile and the number of the line at fault. A failing load may have set some values.
void LoadGcfFile(const std::string &path, CParameterStore &store);
void SaveGcfFile(const std::string &path, const CParameterStore &store);

}  // namespace grbsim

#endif
