#!/usr/bin/env bash
# How `krofx print` shows bill payment and the directory of institutions.
source "$(dirname "$0")/runner.sh" "$@"

for version in '' -v2; do
  expect 0 print "$examples/billpay-response$version.ofx"
  has out 'Kestrel Timber'
  has out '61.45'
  has out '2026-03-15'
  has out 'WILLPROCESSON'
  has out 'Timber for the boat house'
  expect 0 print --json "$examples/billpay-response$version.ofx"
  has out '"processing_status": "PROCESSEDON"'
  has out '"payee": "Harborton Water and Light"'
  has out '"due": "2026-03-20"'
  has out '"discount_rate": "2.5"'
  has out '"frequency": "MONTHLY"'
  expect 0 print --csv --table invoices "$examples/billpay-response$version.ofx"
  [ "$(wc -l <out)" -eq 3 ] || fail 'not a header and two invoices'
  expect 0 print "$examples/billpay-request$version.ofx"
  has out 'Recurring payment asked for'
  has out 'A payment that did not arrive'
  lacks out 'PMTINFO'
  lacks out not-a-real-password

  expect 0 print "$examples/branding-response$version.ofx"
  has out 'Branding directory'
  has out 'Harbor Federal Savings'
  has out 'CREDIT CARD'
  has out 'https://ofx.harborfed.example/profile'
  expect 0 print --csv --table institutions "$examples/branding-response$version.ofx"
  [ "$(wc -l <out)" -eq 3 ] || fail 'not a header and two institutions'
  expect 0 print --json "$examples/branding-response$version.ofx"
  has out '"brand_id": 40711'
  has out '"features": "LOGO, BANNER"'
done
expect 0 print "$examples/branding-response.ofx"
has out 'BANKSVC, CCSVC, BPSVC'
expect 0 print "$examples/branding-response-v2.ofx"
has out 'BANKSVC, PRESSVC'
finish
