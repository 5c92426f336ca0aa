// The kinds of shadings, as files and databases number them.
#pragma once

#include "model/Codes.h"

namespace orv {

inline constexpr std::array kShadingTypeNames{
    CodeName{1, "Venetian blind"},
    CodeName{2, "Vertical blind"},
    CodeName{3, "Screen"},
    CodeName{4, "Other shading"},
};

}  // namespace orv
