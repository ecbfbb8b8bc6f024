// The grammar of the DFT configuration language: one table that the parser, the repetition warnings and the
// block-end checks walk.
//
// `block NAME` opens a block; each line below it is a statement, or several that are alike: the keywords with
// commas between them, the shape of what follows, and its marks. `shape NAME` names a shape for use in
// others. In a shape
//
//     name string pattern integer real percent    one token of that class, stored as a leaf
//     digits  an integer of any length            bit  0 or 1
//     pin-name  a name that may be <instance>.<pin>
//     %WORD WORD , ; = => : . ~ ! '{' '}' '(' ')' '[' ']'    the word or character itself
//     @WORD   a keyword whose text is stored as a leaf
//     ( a | b )  one of     [ a ]  at most once     a*  any number of times
//     <KIND a>   a node of that kind around a       {BLOCK}  a body in braces, always last
//
// Every word in capitals that is used is a keyword. `words` reserves further ones: the first one's token
// stands for all of the line, so that the text alone tells them apart.
//
// %WORD_# is the numbered word %WORD_<n>, which the scanner knows by its front. Statements of one keyword are
// told apart by the first place in which they differ, and each counts for itself. Marks:
//
//     #1          a further one is warned of; look-ups find the first
//     #n          repetition is meant; statements of one kind are collected in one list node
//     #as(KIND)   kind of the node; otherwise the keyword without '%' and with _NODE behind it
//     #list(KIND) the list node of a #n statement; otherwise its own kind with _LIST_NODE
//     #text       the keyword's text becomes the node's first leaf
//     #need       warned of when it is missing at the block's end, by its keyword or by #need(TEXT)
#include "dftlang/grammar.hh"

const char *const grammar_text[] = {
    R"(
words %ALL
words %BSC_LIB_FILE
words %BS_CHAIN_FILE
words %CONTROL_PORT_1
words %CONTROL_PORT_2
words %CONTROL_PORT_3
words %P1500
words %EXTRA_SEQ %EXTRA
words %SCAN_CLOCK %SCAN_CLOCK_#
words %DATA %DATA_#
words CONTROL CONTROL_WEIGHT0 CONTROL_WEIGHT0_A CONTROL_WEIGHT0_B CONTROL_WEIGHT1 CONTROL_WEIGHT1_A CONTROL_WEIGHT1_B
words OBSERVE OBSERVE_BLOCK
shape names           <IDENT_LIST_NODE name ( [,] name )*>
shape name-list       <IDENT_LIST_NODE name ( , name )*>
shape names-or-name   ( '{' names '}' | name )
shape number          ( integer | real )
shape numbers         number ( [,] number )*
shape integers        integer ( [,] integer )*
shape pair            <PIN_NODE name ['{' name '}']>
shape targets         <PIN_LIST_NODE pair ( , pair )*>
shape pin             ( pin-name | '{' name '}' )
shape pin-value       <FORCE_PIN_VALUE_NODE name pattern>
shape fix-pair        <DONT_FIX_INFO_NODE name '{' name '}'>
shape group-end       <PIN_NODE [integer :] name>
shape fold-port       '{' %PORT_NAME <CFG_PORT_NAME_NODE name> ; %GROUP
shape fold-in-groups  fold-port '{' ( <CFG_GROUP_NODE name , pair , pair [, name] ;> )* '}' '}'
shape fold-out-groups fold-port '{' ( <CFG_GROUP_NODE name ( , name )* ;> )* '}' '}'
shape control-word    <PSO_CONTROL_NODE @CONTROL>
shape observe-word    <PSO_OBSERVE_NODE @OBSERVE>
shape braced          <PSO_PORT_NAME_NODE '{' name '}'>
shape tail            <PIN_NODE ( braced [name] braced | name braced )>
shape item-marks      [<PSO_COMPLEMENT_NODE ~>] [<PSO_INVERSE1_NODE !>]
shape item-rest       item-marks name [<SYMBOL_NODE CAPTURE1>] [<PSO_INVERSE2_NODE !>] [tail]
shape plain-item      <INSTANCE_ELEMENT_NODE item-rest>
shape item            <INSTANCE_ELEMENT_NODE [integer] item-rest>
shape item-group      <GROUP_NODE '{' item ( , item )* '}'>
shape group           ( item | item-group )
shape point-words     [control-word] [observe-word] [<PSO_TRANSITION_NODE TRANSITION>] [<PSO_PIPELINE_NODE PIPELINE>]
shape point-place     <PIN_NODE ( name [braced] | braced [name] braced )>
shape point           <INSTANCE_ELEMENT_NODE '(' [point-place] ')' point-words>
shape counted-point   integer ( point | plain-item ( , group )* )
shape test-points     ( counted-point | point | ( plain-item | item-group ) ( , group )* )
)",
    R"(
block DFT
    %SELECT_SCAN {SELECT_SCAN} #1
    %PORT_INFO {PORT_INFO} #1
    %SEQUENCE name {SEQUENCE} #n
    %INSTRUCTION name {INSTRUCTION} #n
    %PLL_CLOCK_FIX name {PLL_CLOCK_FIX} #n
    %PLL {PLL} #n
    %BLACKBOX {BLACKBOX} #n
    %READ_MAP {FILE_NAME} #1
    %TOP_MODULE = name ; #1
    %SCAN_MODIFY_CMD {FILE_NAME} #1 #as(MODIFY_CMD_NODE)
    %CONNECT_SCAN (name | integer) name {CONNECT_SCAN} #n
    %CONNECT_CORE name {CONNECT_CORE} #n
    %CORE {CORE} #n
    %TEST_SCHEDULE {TEST_SCHEDULE} #n
    %TEST_SESSION name ; '{' ( <TEST_SESSION_INFO_NODE name . name ;> )* '}' #n
    %TEST_ARCHITECTURE {TEST_ARCHITECTURE} #n
    %CONNECT_BIST name name {CONNECT_BIST} #n
    %ATPG_CONSTRAINTS {ATPG_CONSTRAINTS} #1 #as(ATPG_CONSTAINTS_NODE)
    %TEST_CONVERSION {TEST_CONVERSION}
    %SELECT_FAULT {SELECT_FAULT} #1
    %SCAN_REPAIR {SCAN_REPAIR} #1
    %SCAN_DECODER {SCAN_DECODER} #1
    %CLOCK_PERIOD {CLOCK_PERIOD} #1
    %TEST_FILES {TEST_FILES} #1
    %TA_CONSTRAINTS {TA_CONSTRAINTS} #1
    %LOCKUP_LATCH_FILE {FILE_NAME}
    %SCAN_MODULE name {SCAN_MODULE} #n
    %MBIST_CONSTRAINTS {MBIST_CONSTRAINTS} #1
    %MBIST_BSD {MBIST_BSD} #1
    %INSTRUCTION_BINARY pattern ; #1 #as(CFG_INSTRUCTION_BINARY_NODE)
    %REGISTER_LENGTH integer ; #1 #as(CFG_REGISTER_LENGTH_NODE)
    %FOLD_SCAN_IN_# fold-in-groups #n #as(CFG_FOLD_SCAN_IN_NODE)
    %FOLD_SCAN_OUT_# fold-out-groups #n #as(CFG_FOLD_SCAN_OUT_NODE)
    %CIPHERTEXT '{' digits* '}' #1
    %FOLD_SCAN_INFO [name] {FOLD_SCAN_INFO} #n
    %MULTICYCLE_PATH {MULTICYCLE_PATH} #1
    %CRITICAL_PATH {CRITICAL_PATH} #1
    %FALSE_PATH {MULTICYCLE_PATH} #1
    %NONTPI_INSTANCE {NONTPI_INSTANCE} #1
    %SCAN_IN_LIST, %SCAN_OUT_LIST = names ; #1
    %GUI {GUI} #1
    %HOOKUP {HOOKUP} #1
    %CAPTURE_CLOCK {CAPTURE_CLOCK} #1
    %WRAPPER {WRAPPER} #1
    %DEEP_SCAN_INFO {DEEP_SCAN_INFO} #1
    %DEF_INFO {DEF_INFO} #1
    %CORE_NO_SCAN {CORE_NO_SCAN} #1 #as(CORE_NO_SCAN)
block SELECT_SCAN
    %SCAN_INIT, %SCAN_INCR, %SCAN_MAX (integer | percent) ; #1 #need
    %DONT_SCAN_TYPE name-list ; #1 #need
    %MUST_SCAN_TYPE, %DONT_SCAN_MODULE name-list ; #1
    %DONT_SCAN, %MUST_SCAN names ; #1
block PORT_INFO
    %PORT name {PORT}
block PORT
    %PAD name '{' names '}' ;
    %TYPE name ;
    %PORT_MAP name '{' names '}' ;
block SEQUENCE
    %FORCE name = pattern ; #n #need
    %FORCE_CLOCK, %CLOCK name [= pattern] ; #n #list(FORCE_LIST_NODE)
    %CYCLE_LENGTH, %FRAME_LENGTH = integer ; #1
    %SET_TIMING {SET_TIMING} #n
block SET_TIMING
    %CYCLE [=] integer ;
    %P_CLOCK, %N_CLOCK, %PI_TIME, %PO_TIME, %IO_TIME [=] numbers names ;
    %PRECISION [=] integer ;
    %DEFAULT_PI_TIME [=] (integer | real) ; #as(D_PI_TIME_NODE)
    %DEFAULT_PO_TIME [=] (integer | real) ; #as(D_PO_TIME_NODE)
    %DEFAULT_IO_TIME [=] numbers ; #as(D_IO_TIME_NODE)
    %TYPE name ;
block INSTRUCTION
    %MODE = string ; #1
    %PREAMBLE = names ; #1
    %SHIFT, %EXTRA_SEQ, %PROPAGATE, %HOLD, %RUNBIST, %CAPTURE = name ; #1
    %POSTAMBLE = names ; #1
    %RAM_WRITE = name ; #1
block PLL_CLOCK_FIX
    %SCOPE, %PLL_PATH = name ;
    %EXTERNAL_PLL_IN_CLOCK name {EXTERNAL_IN}
    %FIX_EXTERNAL_PLL_IN_AND_SCAN_CLOCK name {FIX_EXTERNAL_IN}
    %INTERNAL_PLL_IN_CLOCK name {INTERNAL_IN}
    %FIX_INTERNAL_PLL_IN_AND_SCAN_CLOCK name {FIX_INTERNAL_IN}
    %FIX_INTERNAL_PLL_IN_AND_EXTERNAL_SCAN_CLOCK name {FIX_INTERNAL_IN_EXTERNAL}
    %FIX_INTERNAL_PLL_OUT_AND_SCAN_CLOCK name {FIX_INTERNAL_OUT}
block EXTERNAL_IN
    %PERIOD = integer ;
    %FROM_EXTERNAL_PLL_CLOCK_INPORT = name ;
block FIX_EXTERNAL_IN
    %PERIOD = integer ;
    %PLL_CLOCK_INPORT, %FROM_EXTERNAL_SCAN_CLOCK_INPORT, %NEW_EXTERNAL_PLL_CLOCK_INPORT = name ;
block INTERNAL_IN
    %PERIOD = integer ;
    %PLL_CLOCK_INPORT, %FROM_INTERNAL_PLL_CLOCK_WIRE = name ;
block FIX_INTERNAL_IN
    %PERIOD = integer ;
    %PLL_CLOCK_INPORT, %FROM_CLOCK_GENERATOR, %FROM_CLOCK_GENERATOR_OUTPORT = name ;
    %FROM_INTERNAL_SCAN_CLOCK_WIRE, %NEW_SCAN_CLOCK_ENABLE_INPORT, %NEW_INTERNAL_PLL_CLOCK_WIRE = name ;
    %NEW_LBIST_DOMAIN_CLOCK_OUTPORT = name ;
block FIX_INTERNAL_IN_EXTERNAL
    %PERIOD = integer ;
    %PLL_CLOCK_INPORT, %FROM_EXTERNAL_SCAN_CLOCK_INPORT, %THROUGH_CLOCK_GENERATOR = name ;
    %THROUGH_CLOCK_GENERATOR_INPORT, %NEW_EXTERNAL_PLL_CLOCK_INPORT = name ;
block FIX_INTERNAL_OUT
    %PERIOD = integer ;
    %PLL_CLOCK_OUTPORT, %DRIVE_CLOCK_WIRE, %NEW_SCAN_CLOCK_ENABLE_INPORT = name ;
    %NEW_INTERNAL_PLL_CLOCK_WIRE, %NEW_LBIST_DOMAIN_CLOCK_OUTPORT = name ;
block PLL
    %NAME, %FIX_FB_CLOCK_IN_TEST, %FB_ENABLE = name ;
    %REF_CLOCK {REF_CLOCK}
    %FB_CLOCK {FB_CLOCK}
    %OUTPUT_CLOCK {OUTPUT_CLOCK}
    %FORCE0, %FORCE1, %CONSTANT0, %CONSTANT1, %DONT_MODIFY = names ;
    %AUTO_CONSTANT = bit ;
    %SCAN_CK_MUX {SCAN_CK_MUX}
    %TWO_PULSE_GEN {TWO_PULSE_GEN}
block REF_CLOCK
    %PERIOD = real ;
    %CLOCK name = pattern ;
    %CLOCK_NET name ;
    %LB_CLOCK name = pattern ;
    %ENABLE, %EXT_PORT = name ;
block FB_CLOCK
    %PERIOD = real ;
    %CLOCK name = pattern ;
    %CLOCK_NET name ;
    %LB_CLOCK name = pattern ;
    %ENABLE = name ;
block OUTPUT_CLOCK
    %PERIOD = real ;
    %CLOCK name = pattern ;
    %CLOCK_NET name ;
    %LB_CLOCK name = pattern ;
    %ENABLE = name ;
    %PLL_CLOCK_BUFFER = names ;
block SCAN_CK_MUX
    %NAME, %PLL_CK_PIN, %SCAN_CK_PIN, %CLK_NET = name ;
block TWO_PULSE_GEN
    %NAME, %CAPTURE_MODE, %FINISH_MODE, %RESET_MODE = name ;
block BLACKBOX
    %INSTANCE_NAME, %MODULE_NAME = name ;
    %FORCE0, %FORCE1, %CONSTANT0, %CONSTANT1, %DONT_MODIFY, %CLOCK = names ;
    %INPUT = (observe-word | @DONT_MODIFY) ;
    %OUTPUT = (control-word | @DONT_MODIFY | bit) ;
block FILE_NAME
    %FILE_NAME = string ;
block CONNECT_SCAN
    %SCAN_DELAY {SCAN_DELAY} #1
    %SCAN_PORT {SCAN_PORT} #1
    %SCAN_PORT name {SCAN_PORT} #1
    %SCAN_SELECT_# {SCAN_SELECT} #n #as(SCAN_SELECT_NODE) #text
    %SCAN_CLOCK {SCAN_CLOCK} #n #text
    %SCAN_INSTANCES '{' names-or-name ( , names-or-name )* ; '}' #1
    %SCAN_INSTANCES_FILE {FILE_NAME} #1
    %SCAN_INSTRUCTION '{' %INSTRUCTION = name ; '}' #1 #need
    %SCAN_PAD {SCAN_PAD}
    %MS_VIOLATION integer ; #1 #as(MS_VIOLATION)
block SCAN_DELAY
    %DELAY_OUT, %DELAY_OUT_DEFAULT, %SCAN_TEST = name ; #1 #need
block SCAN_PORT
    %SCAN_IN, %SCAN_OUT, %DEFAULT = name ; #1
block SCAN_SELECT
    %SELECT, %GLOBAL_SELECT = name ; #1 #need
block SCAN_CLOCK
    %NAME, %INSTANCE_NAME, %PIN_NAME = name ;
    %CLOCK {INNER_CLOCK} #1
    %CLOCK, %GLOBAL_CLOCK = name ; #1
    %GLOBAL_CLOCK = name '{' name '}' ; #1
    %CLOCK_POLARITY = name ; #1
block INNER_CLOCK
    %NAME, %INSTANCE_NAME, %PIN_NAME = name ;
    %CLOCK {INNER_CLOCK}
    %CLOCK, %GLOBAL_CLOCK = name ; #1
    %GLOBAL_CLOCK = name '{' name '}' ; #1
    %CLOCK_POLARITY = name ; #1
block SCAN_PAD
    %SDI_PAD_NAME, %SDO_PAD_NAME, %SDI_PAD_OUT, %SDO_PAD_IN = name ;
    %SDO_PAD_CLASS, %SDI_PAD_CLASS = names ;
block CONNECT_CORE
    %CORE_PACKAGE_FILE = string ; #1
    %MODULE_NAME, %INSTANCE_NAME = name ; #1
    %CORE_INSTRUCTION, %SYSTEM_INSTRUCTION '{' %INSTRUCTION = name ; '}' #1
    %SCAN_PORT [name] {SCAN_PORT} #n
block CORE
    %NAME = name ; #as(CORE_NAME_NODE)
    %TIE0, %TIE1 = names ;
    %DFT_FILE, %LBIST_FILE = string ;
    %PREAMBLE = names ;
    %PATSET name {PATSET}
    %CLOCK_PORTS, %SET_RESET_PORTS, %BIDI_PORTS, %SCAN_IN_PORTS, %SCAN_OUT_PORTS = targets ;
    %INSTRUCTION name {CORE_INSTRUCTION}
    %DONT_FIX fix-pair ( [,] fix-pair )* ;
block PATSET
    %DFT_FILE = string ;
    %FORCE_LIST = names ;
    %BTP, %TP, %INT, %OPTION = string ;
block CORE_INSTRUCTION
    %MODE = string ;
    %PREAMBLE = names ;
    %SHIFT, %EXTRA_SEQ, %HOLD, %CAPTURE = name ;
    %PATSET name {CORE_PATSET}
block CORE_PATSET
    %BTP = string ;
block TEST_SCHEDULE
    %TEST_SESSION name ;
block TEST_ARCHITECTURE
    %TAM_CONFIG {TAM_CONFIG}
    %TYPE, %TEST_CONTROLLER = name ;
block TAM_CONFIG
    %CORE name {TAM_CORE}
block TAM_CORE
    %TAM_IN name {TAM_IN}
    %TAM_OUT name {TAM_OUT}
    %PORT_INFO {TAM_PORT_INFO}
block TAM_IN
    %TAM_IN_PORT, %TAM_IN_PAD, %TAM_IN_PAD_OUT = name ;
block TAM_OUT
    %TAM_OUT_PORT, %TAM_OUT_PAD, %TAM_OUT_PAD_IN = name ;
block TAM_PORT_INFO
    %PORT name {TAM_PORT}
block TAM_PORT
    %TYPE name ;
    %PORT_MAP names ;
block CONNECT_BIST
    %BIST_TYPE = string ; #1 #need
    %BIST_PORT {BIST_PORT} #1 #need
    %BIST_SELECT_# {SCAN_SELECT} #n #as(BIST_SELECT_NODE) #text #need(%BIST_SELECT)
    %BIST_CLOCK_# {SCAN_CLOCK} #n #as(BIST_CLOCK_NODE) #text #need(%BIST_CLOCK)
    %BIST_INSTANCES '{' names-or-name ( , names-or-name )* ; '}' #1
    %BIST_INSTANCES_FILE {FILE_NAME} #1
    %BIST_INSTRUCTION {BIST_INSTRUCTION} #1 #need
block BIST_PORT
    %SCAN_IN, %SCAN_OUT = name ; #1 #need
    %DEFAULT = name ; #1
block BIST_INSTRUCTION
    %INSTRUCTION = name ; #1 #need
    %SEED = pattern ; #1 #need #as(SYMBOL_NODE)
block ATPG_CONSTRAINTS
    %ATPG_MODE string {ATPG_MODE}
block ATPG_MODE
    %FORCE name = pattern ; #n
    %STROBE name = pattern ; #1
    %AUTOSAVE integer ; #1
    %SKIPFAULTS integers ; #1
    %ILLEGAL_INPUTS, %LEGAL_INPUTS names = <PATTERN_LIST_NODE pattern (, pattern)*> ; #n
    %GRAY_CODE names = <PATTERN_LIST_NODE pattern> ; #n
    %RESET, %RESET_DISABLE, %SET, %SET_DISABLE name = pattern ; #n
    %POWER_ON_RESET, %POWER_ON_SET [names] ; #n
    %RAM name = string ; #n
    %CLOCK name = pattern ; #n #as(ATPG_CLOCK_NODE)
    %BLACK_BOX, %BYPASS names ; #1
    %UNCONTROLLABLE names ; #1 #as(UNCONTROL_NODE)
    %UNCONTROLLABLE_CHAIN names ; #1 #as(UNCONTROL_CHAIN_NODE)
    %UNOBSERVABLE names ; #1 #as(UNOBSERVE_NODE)
    %UNOBSERVABLE_CHAIN names ; #1 #as(UNOBSERVE_CHAIN_NODE)
    %FEEDBACK_LOOPS = string ; #1
    %RAM_READ, %RAM_WRITE names [=] pattern ; #n
    %SKIP_BUS, %NO_FLOATING, %SKEW_FF, %DONT_FAULT_MODULE names ;
    %CONTROL name = pattern ; #n
    %CONTROL_CELL {CONTROL_CELL} #n
block CONTROL_CELL
    %CLASS_NAME = name ; %PIN_NAME = <PIN_NAME_NODE name> ; #as(CELL_NODE)
    %PIN_NAME = <PIN_NAME_NODE name> ; %CLASS_NAME = name ; #as(CELL_NODE)
block TEST_CONVERSION
    %SET_TIMING {SET_TIMING}
    %REMOVE_PIN names ;
    %CLOCK {CONVERSION_CLOCK} #as(CONVERSION_CLOCK_NODE)
    %RAM_READ, %RAM_WRITE names [=] pattern ; #n
    %DIFF_PAD name {DIFF_PAD} #n
block CONVERSION_CLOCK
    %CLOCK name (= pattern | integer) ; #as(TEST_C_CLOCK_NODE)
    %BIST_CLOCK name (= pattern | integer) ; #as(TEST_B_CLOCK_NODE)
block DIFF_PAD
    %P_PAD, %N_PAD = name ; #1 #need
block SELECT_FAULT
    %FAULT_MODEL = string ; #1
    %RANDOM_SAMPLE (integer | percent) ; #1
    %STATISTICAL_SAMPLE {STATISTICAL_SAMPLE} #1
    %DONT_FAULT_TYPE, %MUST_FAULT_TYPE name-list ; #1
    %DONT_FAULT, %MUST_FAULT names ; #1
    %FAULT_ORDER string ; #1
    %FILE_NAME = string ; #1
    %DONT_FAULT_MODULE names ; #1
    %DONT_FAULT_FILE, %MUST_FAULT_FILE = string ; #1
    %DONT_FAULT_PATH '{' ( <PATH_NAME_NODE name pattern ;> )* '}' #as(DONT_FAULT_PATH)
block STATISTICAL_SAMPLE
    %PRECISION, %CONFIDENCE_LEVEL percent ; #1 #need
block SCAN_REPAIR
    %FORCE_NET {FORCE_NET} #1
block FORCE_NET
    %NET_NAME = name ; #1
    %SHIFT, %HOLD, %CAPTURE = pattern ; #1
block SCAN_DECODER
    %SCAN_MODE {DECODER_PORT} #1
    %SCAN_MODE = name ; #1
    %TEST_MODE {DECODER_PORT} #1
    %TEST_MODE = name ; #1
    %FS_MODE {FS_MODE} #1
    %SCAN_CLK = name ;
    %OVERRIDE_MODE {DECODER_PORT} #1
    %OVERRIDE_MODE = name ; #1
    %RAM_WRITE {DECODER_PORT} #1
    %RAM_WRITE = name ; #1
    %SCAN_MODE_OUT, %SCAN_MODE_INV_OUT, %TEST_MODE_OUT, %TEST_MODE_INV_OUT {DECODER_PIN} #1
    %OVERRIDE_MODE_OUT {DECODER_PIN} #1
    %OVERRIDE_MODE_INV_OUT {DECODER_PIN} #1 #as(OVERRIDE_INV_OUT_NODE)
    %POSITION, %DECODER_NAME, %DECODER_SCAN_MODE, %DECODER_SCAN_MODE_INV, %DECODER_TEST_MODE = name ; #1
    %DECODER_TEST_MODE_INV = name ; #1
block DECODER_PORT
    %PORT_NAME = name ; #1 #as(DECODER_PORT_NAME_NODE)
    %PAD_NAME = name ; #1 #as(DECODER_PAD_NAME_NODE)
    %PAD_OUT = name ; #1 #as(DECODER_PAD_OUT_NODE)
    %POLARITY = name ; #1 #as(DECODER_POLARITY_NODE)
    %POLARITY ; #1 #as(DECODER_POLARITY_NODE)
block FS_MODE
    %PORT_NAME (name = integer | = name) ; #as(DECODER_PORT_NAME_NODE)
    %PAD_NAME = name ; #1 #as(DECODER_PAD_NAME_NODE)
    %PAD_OUT = name ; #1 #as(DECODER_PAD_OUT_NODE)
    %POLARITY = name ; #1 #as(DECODER_POLARITY_NODE)
block DECODER_PIN
    %INSTANCE_NAME, %PIN_NAME = name ; #1
block CLOCK_PERIOD
    %CLOCK name = integer ; #1
    %CLOCK name = real ; #1
block TEST_FILES
    %MBIST_FILE, %LBIST_FILE, %BSD_FILE, %MACRO_TEST = name ; #1
block TA_CONSTRAINTS
    %CLOCK name = pattern ; #n #as(TA_CLOCK_NODE)
    %FORCE name = pattern ; #n
    %FORCE_CLOCK name [= pattern] ; #n
    %DFT names ; #1 #as(TA_DFT_NODE)
    %ISOLATE_MOD, %ISOLATE_RAM, %ISOLATE_REG name '{' pin-value (, pin-value)* '}' ; #n
    %INIT_PATTERNS name ; #1
block SCAN_MODULE
    %SCAN_IN, %SCAN_OUT, %SCAN_MODE, %TEST_MODE = name ; #1
    %DONT_FIX fix-pair ( [,] fix-pair )* ;
block MBIST_CONSTRAINTS
    %MBIST_CONTROL integer {MBIST_CONTROL}
block MBIST_CONTROL
    %BISTMODE, %BISTFAIL, %ERRMAP, %BIST_RESULT_EN, %BIST_RESULT_IN, %BIST_RESULT_OUT, %FINISH = pin ;
    %UTI_SCAN_IN, %UTI_SCAN_OUT, %MEMGROUPSEL, %MEMGROUPSEL_IN, %MEMGROUPSEL_OUT, %BIST_SEL_EN = pin ;
    %VMR_TIS, %VCLK, %VMR_UTI_IN, %VMR_UTI_OUT, %VMR_UTI_SHIFT, %VMR_UTI_HOLD_IN, %VMR_UTI_HOLD_OUT = pin ;
    %BYPASS, %BIST_CLK, %SHIFTEND, %SIGNATUREOUT = pin ;
block MBIST_BSD
    %INSTRUCTION name {BSD_INSTRUCTION}
block BSD_INSTRUCTION
    %MBIST_CLOCK = name ;
    %MBIST_MDF = string ;
block FOLD_SCAN_INFO
    %CHAIN_ORDER, %VIRTUAL_SOURCE, %VIRTUAL_CONTROL names ;
block MULTICYCLE_PATH
    %PATH {PATH}
block PATH
    %FROM, %THROUGH, %TO = targets ;
    %CYCLE = integer ;
    %FILE_NAME = string ;
block CRITICAL_PATH
    %CPATH = targets ;
block NONTPI_INSTANCE
    %INSTANCE = name ;
block GUI
    %PATH, %EXTRACTION, %DRC, %INIT_CONFLICT, %UNKNOWN = string ;
block HOOKUP
    %CLOCK ({INNER_CLOCK} | = name ;)
block CAPTURE_CLOCK
    %CLOCK name = pattern ;
block WRAPPER
    %FOLDSCAN {FOLDSCAN} #as(WRAPPER_FOLDSCAN_NODE)
block FOLDSCAN
    %TYPE name ;
    %WRAPPER_CELL name name ;
    %WRAPPER_CHAIN name {WRAPPER_CHAIN} #n
    %SKIP_SIGNALS names ;
    %INSTRUCTION name ;
    %WRAPPER_CHAIN_FILE = string ;
block WRAPPER_CHAIN
    %CLOCK = name ; #need(%CLK)
    %SCAN_IN, %SCAN_OUT = name ; #need
block DEEP_SCAN_INFO
    %TDDM_TDM_INFO name {TDDM_TDM_INFO} #n #need
    %TOP_MODULE name ; #need(TOP_MODULE)
    %SPEED_RATIO integer ;
block TDDM_TDM_INFO
    %SPEED_RATIO integer ; #1
    %TDDM_GROUP name {TDDM_GROUP} #1 #need
    %TDM_GROUP name {TDM_GROUP} #1 #need
block TDDM_GROUP
    %TDDM_IN, %CLOCK = name ; #1 #need
    %CHAIN_ORDER names ; #1 #need
block TDM_GROUP
    %TDM_OUT, %CLOCK = name ; #1 #need
    %CHAIN_ORDER names ; #1 #need
    %CLEAR = name ; #1 #need
block DEF_INFO
    %PARTITION names ;
block CORE_NO_SCAN
    %NAME = names ;
)",
    R"(
block MAP
    %MAP_SCAN name {MAP_SCAN} #n
    %MAP_GROUP {MAP_GROUP} #n
    %REPAIR_CELL {REPAIR_CELL} #1
    %TEST_POINT_CELL {TEST_POINT_CELL} #1
block MAP_SCAN
    %MAP_CELL name => name {MAP_CELL} #n
    %DELAY_CELL name {DELAY_CELL} #1
block MAP_CELL
    %SCAN_PORT %SYSTEM_IN => name ; #1 #as(SYSTEM_PORT_IN_NODE)
    %SCAN_PORT %SCAN_IN => name ; #1 #as(SCAN_PORT_IN_NODE) #need(%SCAN_PORT %SCAN_IN)
    %SCAN_PORT %SCAN_OUT => name ; #1 #as(SCAN_PORT_OUT_NODE)
    %SCAN_PORT %SCAN_OUT_INV => name ; #1 #as(SCAN_PORT_OUT_INV_NODE)
    %SCAN_SELECT_# %SELECT => name ; #n #as(SCAN_SELECT_NODE) #text
    %SCAN_CLOCK %CLOCK => name ; #n #text
    %CHANGE_NAME name => name ; #n
    %SCAN_MODE_ACTIVE = name ;
block DELAY_CELL
    %SCAN_PORT %SCAN_IN => name ; #1 #as(SCAN_PORT_IN_NODE) #need(%SCAN_PORT %SCAN_IN)
    %SCAN_PORT %SCAN_OUT => name ; #1 #as(SCAN_PORT_OUT_NODE) #need(%SCAN_PORT %SCAN_OUT)
    %LOOP_DATA_IN, %LOOP_DATA_OUT, %DELAY_SCAN_TEST, %DELAY_SCAN_CLOCK, %DELAY_SCAN_SCAN => name ; #1 #need
    %DELAY_MAP_CELL name {DELAY_MAP_CELL}
block DELAY_MAP_CELL
    %DATA_IN => name ; #1 #as(DELAY_DATA_IN_NODE)
    %DATA_OUT => name ; #1 #as(DEALY_DATA_OUT_NODE)
block MAP_GROUP
    %GROUP_CELL '[' names ']' => name {GROUP_CELL}
block GROUP_CELL
    %CONNECT group-end => group-end ; #n
    %DISCONNECT group-end ; #n
block REPAIR_CELL
    %BUFFER name integer ;
    %CELL ( name | @LOCKUP_LATCH ) name ( ; | {CELL} )
block CELL
    %DATA, %SELECT, %ENABLE = name ; #as(PIN_NODE) #text
    %STRENGTH = integer ; #as(PIN_NODE) #text
    %CK, %IN, %OUT, %CLOCK, %OUTPUT, %TRIGGER, %ACTIVE = name ; #as(PIN_NODE) #text
block TEST_POINT_CELL
    %CELL (observe-word | control-word | name) name {TEST_POINT}
block TEST_POINT
    %DATA_IN, %DATA_OUT, %SCAN_IN, %SCAN_OUT, %TEST_ENABLE, %SCAN_CLOCK = name ; #as(PIN_NODE) #text
    %SCAN_ENABLE, %EXTRA_GATE = name ; #as(PIN_NODE) #text
block PSO
    MUST_SCAN test-points ; #n #as(PSO_MUST_SCAN_NODE)
    FS_SCAN test-points ; #n #as(PSO_FS_SCAN_NODE)
    DONT_SCAN group (, group)* ; #n #as(PSO_DONT_SCAN_NODE)
    DONT_MODIFY group (, group)* ; #n #as(PSO_DONT_MODIFY_NODE)
    MUST_BE_TRANSPARENT, MUST_BE_TRANSPARENT_B group (, group)* ; #n #as(PSO_MUST_BE_TRANS_NODE)
    MUST_BE_TRANSPARENT_F group (, group)* ; #n #as(PSO_MUST_BE_TRANS_NODE)
    SCAN_GROUP group (, group)* ; #n #as(PSO_SCAN_GROUP_NODE)
    FULL_SCAN group (, group)* ; #n #as(PSO_FULL_SCAN_NODE)
    SELECTED_SCAN group (, group)* ; #n #as(PSO_SELECTED_SCAN_NODE)
    SCAN_IN_PAD [<PSO_COMPLEMENT_NODE ~>] [<PSO_INVERSE1_NODE !>] name [<PSO_INVERSE2_NODE !>] ;
    SCAN_OUT_PAD [<PSO_COMPLEMENT_NODE ~>] [<PSO_INVERSE1_NODE !>] name [<PSO_INVERSE2_NODE !>] ;
    CLOCK string ; #as(PSO_CLOCK_NODE)
    CLOCK_ORDER integer ; #n #as(PSO_CLOCK_ORDER_NODE)
    BUFFER name ; #n #as(PSO_BUFFER_NODE)
    PIPELINE name ; #as(PSO_PIPELINE_NODE)
    LOCKUP_LATCH name ; #as(PSO_LOCKUP_LATCH_NODE)
block PATH_FILE
    %PATH {PATH}
block LOCKUP_FILE
    name ; #as(PSO_LOCKUP_LATCH_NODE) #text
)",
    nullptr,
};

const BLOCK_PAIR block_pairs[] = {
    {"CONNECT_SCAN", PAIR_NOT_BOTH, "%SCAN_INSTANCES", "%SCAN_INSTANCES_FILE"},
    {"CONNECT_BIST", PAIR_ONE_OF, "%BIST_INSTANCES", "%BIST_INSTANCES_FILE"},
    {"CONNECT_BIST", PAIR_NOT_BOTH, "%BIST_INSTANCES", "%BIST_INSTANCES_FILE"},
    {"MAP_CELL", PAIR_ONE_OF, "%SCAN_SELECT_#", "%SCAN_CLOCK", "%SCAN_CLOCK_#"},
    {nullptr, PAIR_NOT_BOTH, nullptr, nullptr},
};
