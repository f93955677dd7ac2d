# shellcheck shell=bash
word_check() { fail 'not yet'; }
