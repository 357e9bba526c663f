'use strict';
// Times and durations as texts. They are given in tenths of a microsecond.

const perSecond = 1e7;

// Such as "17.3 ms".
function durationText(tenths) {
  if (tenths < 1e4) {
    return `${(tenths / 10).toFixed(1)} µs`;
  }
  if (tenths < perSecond) {
    return `${(tenths / 1e4).toFixed(tenths < 1e5 ? 2 : 1)} ms`;
  }
  if (tenths < 60 * perSecond) {
    return `${(tenths / perSecond).toFixed(tenths < 10 * perSecond ? 2 : 1)} s`;
  }
  const seconds = Math.floor(tenths / perSecond);
  const hours = Math.floor(seconds / 3600);
  const minutes = Math.floor(seconds / 60) % 60;
  return hours > 0 ? `${hours} h ${minutes} min` : `${minutes} min ${seconds % 60} s`;
}

// A moment: seconds with as many decimals as tell moments apart that are `step` apart.
function momentText(tenths, step) {
  const decimals = Math.min(7, Math.max(0, Math.ceil(-Math.log10(step / perSecond))));
  return `${(tenths / perSecond).toFixed(decimals)} s`;
}

function countText(count, one, many) {
  return `${count.toLocaleString('en')} ${count === 1 ? one : many}`;
}
