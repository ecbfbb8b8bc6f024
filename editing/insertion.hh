// The drivers of boundary insertion.
#pragma once

/// Plans, writes and carries out the insertion of the boundary register, and prints the report.
void add_boundary_scan_chain();

/// The same for the flow in which all cells live in one module <top>_BCM.
void add_boundary_scan_module();
