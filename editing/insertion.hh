// The drivers of boundary insertion.
#pragma once

/// All of planning, in its fixed order: each step needs the one before. Writes no file.
void plan_cells();

/// Plans, writes and carries out the insertion of the boundary register, and prints the report.
void add_boundary_scan_chain();

/// The same for the flow in which all cells live in one module <top>_BCM.
void add_boundary_scan_module();
