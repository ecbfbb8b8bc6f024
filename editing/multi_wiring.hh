// Control signals and chain of a design with pads in several modules.
#pragma once

/// Writes the control ports, trees and control wires of every module, then the chain.
void connect_scan_cell_for_multi_io();
