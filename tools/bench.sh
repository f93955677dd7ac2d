# shellcheck shell=bash
word_bench() { fail 'not yet'; }
