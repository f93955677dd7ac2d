# shellcheck shell=bash
word_fuzz() { fail 'not yet'; }
