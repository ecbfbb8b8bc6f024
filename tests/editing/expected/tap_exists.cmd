@ 10-10
@ 12-13
@ 59-59
disconnect TAP{BC_LAST}
@ 65-65
