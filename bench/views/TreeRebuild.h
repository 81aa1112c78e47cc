// SPDX-License-Identifier: MIT
#pragma once

namespace quillon::bench {

// The device tree with 1,000 boards of 12 nodes: rebuild, expand all and paint, against a bare
// model in a bare view.
void MeasureTreeRebuild(int rounds);

}  // namespace quillon::bench
