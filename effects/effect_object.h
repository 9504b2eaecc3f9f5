// The long-lived effect objects a render process owns are released through this base.
#pragma once

namespace lx {

class EffectObject {
 public:
  virtual ~EffectObject() = default;
};

}  // namespace lx
