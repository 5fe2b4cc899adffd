// The guide's contents: a filter, and a mark at the section that is being read. Without scripts the links still work.
(function () {
  'use strict';
  var main = document.querySelector('main');
  var filter = document.getElementById('filter');
  var none = document.getElementById('none');
  var entries = [].slice.call(document.querySelectorAll('nav li'));
  var chapters = [].slice.call(document.querySelectorAll('nav details'));

  function linkOf(entry) { return entry.querySelector('a'); }
  function placeOf(entry) { return document.getElementById(linkOf(entry).getAttribute('href').slice(1)); }
  function isHeading(node) { return /^H[1-6]$/.test(node.tagName); }

  // What stands from a heading to the next one.
  function textBelow(heading) {
    var text = heading.textContent;
    for (var node = heading.nextElementSibling; node && !isHeading(node); node = node.nextElementSibling) {
      text += ' ' + node.textContent;
    }
    return text.replace(/\s+/g, ' ').toLowerCase();
  }

  var texts = entries.map(function (entry) { return textBelow(placeOf(entry)); });

  function show() {
    var wanted = filter.value.trim().toLowerCase(), words = wanted.split(/\s+/);
    var found = entries.filter(function (entry, place) {
      return words.every(function (word) { return texts[place].indexOf(word) >= 0; });
    });
    entries.forEach(function (entry) {
      entry.hidden = !found.some(function (other) { return entry.contains(other); });
    });
    chapters.forEach(function (chapter) { chapter.open = wanted !== '' && !chapter.parentNode.hidden; });
    none.hidden = found.length > 0;
    if (wanted === '') { mark(); }
  }

  // The last heading that has reached the top of the window is the one that is being read.
  function mark() {
    var here = null;
    entries.forEach(function (entry) {
      if (placeOf(entry).getBoundingClientRect().top < 40) { here = entry; }
      linkOf(entry).className = '';
    });
    if (!here) { return; }
    linkOf(here).className = 'here';
    if (filter.value === '' && window.matchMedia('(min-width: 64em)').matches) {
      chapters.forEach(function (chapter) { chapter.open = chapter.parentNode.contains(here); });
      if (here.scrollIntoView && !isSeen(linkOf(here))) { linkOf(here).scrollIntoView({ block: 'nearest' }); }
    }
  }

  function isSeen(link) {
    var box = link.getBoundingClientRect();
    return box.top >= 0 && box.bottom <= window.innerHeight;
  }

  var waiting = false;
  window.addEventListener('scroll', function () {
    if (waiting) { return; }
    waiting = true;
    window.requestAnimationFrame(function () { waiting = false; mark(); });
  });
  window.addEventListener('beforeprint', function () {
    chapters.forEach(function (chapter) { chapter.open = true; });
  });
  window.addEventListener('afterprint', show);
  filter.addEventListener('input', show);
  filter.parentNode.hidden = false;
  mark();
}());
