// The order in which AGG's rasterizer sweeps a scanline's cells, given without AGG's own quicksort.
// Included before any rasterizer is used, so that every use takes this sort.
#pragma once

#include <agg_rasterizer_scanline_aa.h>

namespace agg {

// Sorts one scanline's cells by x. AGG's quicksort compares through the cell pointers, and the cells of a
// scanline lie scattered over the whole cell store, so each comparison may miss the cache; this reads
// every cell once, sorts the keys in place of the cells, and lays the pointers out in their order. Cells
// with equal x are summed by the sweep whatever their order, so the coverage is the same.
template <>
void qsort_cells<cell_aa>(cell_aa** start, unsigned num);

}  // namespace agg
