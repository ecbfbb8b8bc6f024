-- What a BSDL file takes from its standard package, so that a VHDL analyser can read it: types, attributes and
-- the names of the cell types (IEEE 1149.1-2001, annex B).
package STD_1149_1_2001 is
  attribute COMPONENT_CONFORMANCE : string;

  attribute PIN_MAP : string;
  subtype PIN_MAP_STRING is string;

  type CLOCK_LEVEL is (LOW, BOTH);
  type CLOCK_INFO is record
    FREQ  : real;
    LEVEL : CLOCK_LEVEL;
  end record;
  attribute TAP_SCAN_IN    : boolean;
  attribute TAP_SCAN_OUT   : boolean;
  attribute TAP_SCAN_CLOCK : CLOCK_INFO;
  attribute TAP_SCAN_MODE  : boolean;
  attribute TAP_SCAN_RESET : boolean;

  attribute COMPLIANCE_PATTERNS : string;
  attribute INSTRUCTION_LENGTH  : integer;
  attribute INSTRUCTION_OPCODE  : string;
  attribute INSTRUCTION_CAPTURE : string;
  attribute INSTRUCTION_PRIVATE : string;

  type ID_BITS is ('0', '1', 'x', 'X');
  type ID_STRING is array (31 downto 0) of ID_BITS;
  attribute IDCODE_REGISTER   : ID_STRING;
  attribute USERCODE_REGISTER : ID_STRING;
  attribute REGISTER_ACCESS   : string;

  type BSCAN_INST is (EXTEST, SAMPLE, INTEST);
  type CELL_TYPE is (INPUT, INTERNAL, CLOCK, OBSERVE_ONLY, CONTROL, CONTROLR, OUTPUT2, OUTPUT3, BIDIR_IN, BIDIR_OUT);
  type CAP_DATA is (PI, PO, UPD, CAP, X, ZERO, ONE);
  type CELL_DATA is record
    CT : CELL_TYPE;
    I  : BSCAN_INST;
    CD : CAP_DATA;
  end record;
  type CELL_INFO is array (positive range <>) of CELL_DATA;
  constant BC_0, BC_1, BC_2, BC_3, BC_4, BC_5, BC_6, BC_7, BC_8, BC_9, BC_10 : CELL_INFO;

  attribute BOUNDARY_LENGTH   : integer;
  attribute BOUNDARY_REGISTER : string;
  attribute PORT_GROUPING     : string;
  attribute RUNBIST_EXECUTION : string;
  attribute INTEST_EXECUTION  : string;
  attribute DESIGN_WARNING    : string;
end STD_1149_1_2001;
