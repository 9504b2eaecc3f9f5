// Levels and gamma lookup tables. Every render process owns one, but no drawing path applies it yet, so
// it holds nothing until a tone operation is offered.
#pragma once

#include "effects/effect_object.h"

namespace lx {

class ToneTables : public EffectObject {};

}  // namespace lx
